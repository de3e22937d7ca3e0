#pragma once

#include "platform/services.h"

namespace velumar {

class QtFolderDialog : public FolderDialog {
 public:
  std::string BrowseForFolder(std::string_view prompt) override;
};

}  // namespace velumar
