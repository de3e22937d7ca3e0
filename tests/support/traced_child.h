#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <string>

namespace velumar {

// Who waits patiently for a lock makes a slow test.
enum class Locks { kFailToo, kWork };

// A child process that does some work and stops at each of its system calls. What is on the disk
// at a stop is what a kill there would leave; and a call may be made to fail as on a broken disk.
class TracedChild {
 public:
  // `work` answers with the child's exit code.
  explicit TracedChild(const std::function<int()>& work) : process_(fork()) {
    if (process_ == 0) {
      if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(1);
      raise(SIGSTOP);
      _exit(work());
    }
    waitpid(process_, &status_, 0);
    traced_ = !WIFEXITED(status_);
    if (traced_) ptrace(PTRACE_SETOPTIONS, process_, nullptr, PTRACE_O_EXITKILL);
  }
  ~TracedChild() {
    if (Ended()) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  TracedChild(const TracedChild&) = delete;
  TracedChild& operator=(const TracedChild&) = delete;

  // False where processes can't be traced.
  bool Traced() const { return traced_; }
  bool Ended() const { return WIFEXITED(status_) || WIFSIGNALED(status_); }
  int ExitCode() const { return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1; }

  // Continues until the next call begins or ends. The child gets its own faults.
  void Go() {
    const bool faulted = WIFSTOPPED(status_) && WSTOPSIG(status_) == SIGSEGV;
    ptrace(PTRACE_SYSCALL, process_, nullptr, faulted ? SIGSEGV : 0);
    waitpid(process_, &status_, 0);
  }

  // At the beginning of a call: its number, such as SYS_fsync.
  long Call() const { return static_cast<long>(Registers().orig_rax); }

  // At the beginning of a call: does it change something on the disk, or lock it?
  bool AtChange(Locks locks) const {
    const user_regs_struct registers = Registers();
    switch (registers.orig_rax) {
      case SYS_openat:
        return (registers.rdx & (O_CREAT | O_WRONLY | O_RDWR)) != 0;
      case SYS_fcntl:
        return locks == Locks::kFailToo &&
               (registers.rsi == F_SETLK || registers.rsi == F_OFD_SETLK);
      case SYS_write:
      case SYS_pwrite64:
      case SYS_ftruncate:
      case SYS_fallocate:
      case SYS_rename:
      case SYS_renameat:
      case SYS_renameat2:
      case SYS_unlink:
      case SYS_unlinkat:
      case SYS_mkdir:
      case SYS_fsync:
      case SYS_fdatasync:
      case SYS_fchmodat:
      case SYS_utimensat:
      case SYS_sendfile:
      case SYS_copy_file_range:
        return true;
      default:
        return false;
    }
  }

  // At the beginning of a call: it is not made, and returns this error.
  void Fail(int error) {
    user_regs_struct registers = Registers();
    registers.orig_rax = static_cast<unsigned long long>(-1);
    ptrace(PTRACE_SETREGS, process_, nullptr, &registers);
    Go();
    registers = Registers();
    registers.rax = static_cast<unsigned long long>(-error);
    ptrace(PTRACE_SETREGS, process_, nullptr, &registers);
  }

 private:
  user_regs_struct Registers() const {
    user_regs_struct registers{};
    ptrace(PTRACE_GETREGS, process_, nullptr, &registers);
    return registers;
  }

  pid_t process_;
  int status_ = 0;
  bool traced_ = false;
};

// The result of work whose changing call number `number` failed, and all later ones if the disk
// stays broken.
struct FailedWork {
  bool traced = false;
  bool reached = false;  // there is such a call
  int exit_code = -1;
};

inline FailedWork FailAt(int number, int error, bool stays_broken, const std::function<int()>& work,
                         Locks locks = Locks::kFailToo) {
  TracedChild child(work);
  FailedWork result{child.Traced()};
  int changes = 0;
  while (result.traced) {
    child.Go();  // a call begins
    if (child.Ended()) break;
    if (child.AtChange(locks) && (++changes == number || (stays_broken && changes > number))) {
      result.reached = true;
      child.Fail(error);
      continue;
    }
    child.Go();  // and ends
    if (child.Ended()) break;
  }
  result.exit_code = child.ExitCode();
  return result;
}

// The order of writes (W), flushes (F) and renames (R) in some work; writes in a row count as one.
// Empty where processes cannot be traced.
inline std::string DiskCallsOf(const std::function<void()>& work) {
  TracedChild child([&] {
    work();
    return 0;
  });
  std::string calls;
  while (child.Traced()) {
    child.Go();
    if (child.Ended()) break;
    const long call = child.Call();
    const bool writes = call == SYS_write || call == SYS_pwrite64;
    if (writes && !calls.ends_with('W')) calls += 'W';
    if (call == SYS_fsync || call == SYS_fdatasync) calls += 'F';
    if (call == SYS_rename || call == SYS_renameat2) calls += 'R';
    child.Go();
    if (child.Ended()) break;
  }
  return calls;
}

}  // namespace velumar
