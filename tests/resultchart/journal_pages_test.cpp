#include "resultchart/journal_pages.h"

#include <qcustomplot.h>

#include "support/matchers.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

// Two pictures of a trade, a tall one and a wide one in either order, and a file that does not
// exist.
TEST(JournalOnPaper, ShowsThePicturesNextToEachOther) {
  const ScratchFolder folder;
  const auto picture = [&](const std::string& name, QSize size, const QColor& colour) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    image.save(QString::fromStdString(folder.Sub(name)));
    return folder.Sub(name);
  };
  const std::string tall = picture("tall.png", {100, 40}, Qt::red);
  const std::string wide = picture("wide.png", {1200, 120}, Qt::blue);
  for (const auto& [left, right] : {std::pair{tall, wide}, {wide, tall}}) {
    const PageGroup group = JournalGroup({"A trade", {}, {left, folder.Sub("none"), right}}, 612);
    const PageBlock& pictures = group.blocks.back();
    EXPECT_EQ(pictures.height, 300 * 40 / 100 + 4) << "half of the width, less the gap";
    QImage page(612, 200, QImage::Format_RGB32);
    page.fill(Qt::white);
    QCPPainter painter(&page);
    pictures.paint(painter, {0, 0, 612, pictures.height});
    EXPECT_EQ(page.pixelColor(150, 15), QColor(left == tall ? Qt::red : Qt::blue));
    EXPECT_EQ(page.pixelColor(306, 15), QColor(Qt::white));
    EXPECT_EQ(page.pixelColor(460, 15), QColor(left == tall ? Qt::blue : Qt::red));
    EXPECT_EQ(page.pixelColor(left == tall ? 150 : 460, 120), QColor(Qt::red))
        << "its whole height";
  }
}

}  // namespace
}  // namespace velumar
