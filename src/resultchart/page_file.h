#pragma once

#include <QString>
#include <functional>

class QPagedPaintDevice;

namespace velumar {

// Makes a PDF file of the pages that `print` draws. The file appears whole or not at all. Throws
// std::runtime_error that names the file, also for what `print` throws.
void SavePages(const QString& file, const QString& title,
               const std::function<void(QPagedPaintDevice& device)>& print);

}  // namespace velumar
