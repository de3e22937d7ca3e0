#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace velumar {

// The border between the UTF-8 texts of the logic and the windows.
inline QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string FromQt(const QString& text) { return text.toStdString(); }

}  // namespace velumar
