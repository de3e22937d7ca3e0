#include <string>

#include "cli/commands.h"
#include "cli/replay_driver.h"
#include "cli/replay_world.h"

namespace velumar {

std::string AssignmentProblem(const std::string& assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string::npos) {
    return "--set needs NAME=TEXT, such as Form1.txtcomm=500, not " + assignment;
  }
  Desktop tables;
  const std::string name = assignment.substr(0, equals);
  return FindControl(tables, name) != nullptr ? "" : "unknown control " + name;
}

void Replay(const ReplayArguments& arguments, CliContext& context) {
  ReplayWorld world(arguments, context.cache);
  ReplayDriver(world, context.in, context.out).Run();
}

}  // namespace velumar
