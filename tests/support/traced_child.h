#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iterator>
#include <string>

namespace velumar {

// Whether locking fails as well. Waiting for a lock that fails would make a test slow.
enum class Locks { kFailToo, kWork };

// A child process that does some work and stops at each of its system calls. What is on the disk
// then is what a kill at that moment would leave. A call can be made to fail, as on a broken disk.
class TracedChild {
 public:
  // `work` returns the child's exit code.
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

  // Continues until the next call begins or ends. The child's own faults are passed on to it.
  void Go() {
    const bool faulted = WIFSTOPPED(status_) && WSTOPSIG(status_) == SIGSEGV;
    ptrace(PTRACE_SYSCALL, process_, nullptr, faulted ? SIGSEGV : 0);
    waitpid(process_, &status_, 0);
  }

  // Runs to the end and calls `at_call` at the beginning of each call. It may Fail the call.
  void Run(const std::function<void()>& at_call) {
    while (traced_ && !Ended()) {
      failing_ = false;
      Go();
      if (!Ended()) at_call();
      if (!Ended() && !failing_) Go();
    }
  }

  // At the beginning of a call: its number, such as SYS_fsync.
  long Call() const { return static_cast<long>(Registers().orig_rax); }

  // At the beginning of a call: true if it changes something on the disk, or locks it.
  bool AtChange(Locks locks) const {
    const user_regs_struct registers = Registers();
    const auto call = static_cast<long>(registers.orig_rax);
    if (call == SYS_openat) return (registers.rdx & (O_CREAT | O_WRONLY | O_RDWR)) != 0;
    if (call == SYS_fcntl) {
      return locks == Locks::kFailToo && (registers.rsi == F_SETLK || registers.rsi == F_OFD_SETLK);
    }
    static constexpr long kChanging[] = {
        SYS_write,           SYS_pwrite64,  SYS_ftruncate, SYS_fallocate, SYS_rename, SYS_renameat,
        SYS_unlink,          SYS_renameat2, SYS_unlinkat,  SYS_mkdir,     SYS_fsync,  SYS_fchmodat,
        SYS_copy_file_range, SYS_fdatasync, SYS_sendfile,  SYS_utimensat};
    return std::ranges::find(kChanging, call) != std::end(kChanging);
  }

  // At the beginning of a call: it is not made, and returns this error.
  void Fail(int error) {
    failing_ = true;
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
  bool failing_ = false;
};

// The result of work whose changing call number `number` failed, and all later ones if the disk
// stays broken.
struct FailedWork {
  bool reached = false;  // there is such a call
  int exit_code = -1;
};

inline FailedWork FailAt(int number, int error, bool stays_broken, const std::function<int()>& work,
                         Locks locks = Locks::kFailToo) {
  TracedChild child(work);
  FailedWork result;
  int changes = 0;
  child.Run([&] {
    if (!child.AtChange(locks)) return;
    if (++changes < number || (changes > number && !stays_broken)) return;
    result.reached = true;
    child.Fail(error);
  });
  result.exit_code = child.ExitCode();
  return result;
}

struct DiskFault {
  int number;  // of the changing call that fails
  int error;
  bool stays_broken;
};

// Calls `attempt` with a passing and a lasting fault at each changing call of some work, until it
// returns false for both: the work has no such call. Returns the number of faults.
inline int ForEachFault(const std::function<bool(const DiskFault& fault)>& attempt) {
  int faults = 0;
  for (int number = 1, before = -1; faults != before; ++number) {
    before = faults;
    for (const DiskFault& fault : {DiskFault{number, EIO, false}, {number, ENOSPC, true}}) {
      const testing::ScopedTrace where(
          __FILE__, __LINE__, "change " + std::to_string(number) + ", " + strerror(fault.error));
      if (attempt(fault)) ++faults;
    }
  }
  return faults;
}

inline bool CanTrace() {
  return TracedChild([] { return 0; }).Traced();
}

// A parent folder in memory, where hundreds of flushes take no time.
inline std::filesystem::path MemoryFolder() {
  const char* memory = "/dev/shm";
  return access(memory, W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
}

// The order of writes (W), flushes (F) and renames (R) in some work; writes in a row count as one.
// Empty where processes cannot be traced.
inline std::string DiskCallsOf(const std::function<void()>& work) {
  TracedChild child([&] {
    work();
    return 0;
  });
  std::string calls;
  child.Run([&] {
    const long call = child.Call();
    const bool writes = call == SYS_write || call == SYS_pwrite64;
    if (writes && !calls.ends_with('W')) calls += 'W';
    if (call == SYS_fsync || call == SYS_fdatasync) calls += 'F';
    if (call == SYS_rename || call == SYS_renameat2) calls += 'R';
  });
  return calls;
}

}  // namespace velumar
