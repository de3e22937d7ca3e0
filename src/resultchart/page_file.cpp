#include "resultchart/page_file.h"

#include <QPdfWriter>

#include "resultchart/saved_file.h"

namespace velumar {

void SavePages(const QString& file, const QString& title,
               const std::function<void(QPagedPaintDevice& device)>& print) {
  SaveWhole(file, [&](QIODevice& device) {
    QPdfWriter writer(&device);
    writer.setTitle(title);
    print(writer);
  });
}

}  // namespace velumar
