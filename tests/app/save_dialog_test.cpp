#include <gmock/gmock.h>

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>
#include <functional>

#include "app/services/dialogs.h"
#include "platform/virtual_platform.h"

namespace velumar {
namespace {

// Runs `act` on the dialog once it is open.
void WithDialog(const std::function<void(QFileDialog& dialog)>& act) {
  QTimer::singleShot(0, [act] {
    auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    act(*dialog);
  });
}

TEST(SaveDialog, OpensInTheFolderOfTheLastFileWithAName) {
  const QTemporaryDir first;
  const QTemporaryDir second;
  const std::vector<FileForm> forms = {{"Report (*.pdf)", "pdf"}};
  MemorySettings settings;
  settings.texts["SaveFolder"] = first.path().toStdString();
  QtSaveDialog dialogs(settings);
  WithDialog([](QFileDialog& dialog) { static_cast<QDialog&>(dialog).accept(); });
  EXPECT_EQ(dialogs.ChooseFile(forms, "Report"),
            (first.path() + QStringLiteral("/Report.pdf")).toStdString());
  WithDialog([&](QFileDialog& dialog) {
    dialog.selectFile(second.filePath(QStringLiteral("mine.pdf")));
    static_cast<QDialog&>(dialog).accept();
  });
  EXPECT_TRUE(dialogs.ChooseFile(forms, "Report").has_value());
  EXPECT_EQ(settings.texts["SaveFolder"], second.path().toStdString());
  WithDialog([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.directory().absolutePath(), second.path());
    dialog.reject();
  });
  EXPECT_EQ(QtSaveDialog(settings).ChooseFile(forms, "Report"), std::nullopt);
}

}  // namespace
}  // namespace velumar
