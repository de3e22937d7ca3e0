#include "platform/system.h"

#include <unistd.h>

#include <QDate>
#include <QDateTime>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <stdexcept>

namespace velumar {

namespace {

const QString kMomentFormat = QStringLiteral("yyyy-MM-dd hh:mm:ss");

void StartDetached(const std::string& program, const QStringList& arguments) {
  QProcess process;
  process.setProgram(QString::fromStdString(program));
  process.setArguments(arguments);
  process.setStandardInputFile(QProcess::nullDevice());
  if (process.startDetached()) return;
  const QFileInfo file(process.program());
  const char* const why = !file.exists()         ? "no such file"
                          : !file.isExecutable() ? "it is not executable"
                                                 : "this system can't run that kind of file";
  throw std::runtime_error("The program " + program + " could not be started: " + why + ".");
}

}  // namespace

std::int32_t SystemClock::Today() const {
  const QDate today = QDate::currentDate();
  return today.year() * 10000 + today.month() * 100 + today.day();
}

std::string SystemClock::UtcMoment() const {
  return QDateTime::currentDateTimeUtc().toString(kMomentFormat).toStdString();
}

std::string SystemClock::LocalMoment(const std::string& utc) const {
  const QDateTime moment =
      QDateTime::fromString(QString::fromStdString(utc) + QLatin1Char('Z'), Qt::ISODate);
  if (!moment.isValid()) return utc;
  return moment.toLocalTime().toString(kMomentFormat).toStdString();
}

void SystemPrograms::Start(std::string_view command_line) {
  std::vector<std::string> command = SplitCommandLine(command_line);
  command.insert(command.end(), extra_arguments_.begin(), extra_arguments_.end());
  QStringList arguments;
  for (std::size_t i = 1; i < command.size(); ++i) {
    arguments.append(QString::fromStdString(command[i]));
  }
  StartDetached(command.front(), arguments);
}

void SystemPrograms::OpenInBrowser(std::string_view address) {
  const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
  if (opener.isEmpty()) {
    throw std::runtime_error(std::string(address) +
                             " could not be opened: xdg-open is not installed.");
  }
  StartDetached(opener.toStdString(), {QString::fromStdString(std::string(address))});
}

std::vector<std::string> ProgramArguments(int argc, char** argv) { return {argv + 1, argv + argc}; }

void UsePlainStreams() {}

bool ErrorsGoToTerminal() { return ::isatty(STDERR_FILENO) == 1; }

void IgnoreClosedPipes() { std::signal(SIGPIPE, SIG_IGN); }

void EndProcessAtOnce(int code) {
  std::cout.flush();
  std::fflush(nullptr);
  ::_exit(code);
}

}  // namespace velumar
