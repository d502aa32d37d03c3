#include <shell/Signals.h>

#include <shell/ExitStatus.h>
#include <shell/Interpreter.h>

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <string_view>
#include <utility>

namespace lomlisp::shell {

namespace {

constexpr unsigned kGraceSeconds = 2;
constexpr int kInterrupted = 128 + SIGINT;

std::atomic<int> interrupts = 0;
std::atomic<bool> isTimeOver = false;

// What a signal handler may read: written before the signal can come, and never freed.
const std::string* lastWords = nullptr;

void WriteFully(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), text.size());
    if (written <= 0) return;
    text.remove_prefix(static_cast<size_t>(written));
  }
}

void OnInterrupt(int) {
  Interpreter::Interrupt();
  if (++interrupts < 3) return;
  WriteFully(STDERR_FILENO, "\nlomsh: interrupted\n");
  _exit(kInterrupted);
}

void OnAlarm(int) {
  if (!isTimeOver.exchange(true)) {
    Interpreter::Stop();
    alarm(kGraceSeconds);
    return;
  }
  WriteFully(STDERR_FILENO, "\nlomsh: the time limit is over, and what was called does not end\n");
  WriteFully(STDOUT_FILENO, *lastWords);
  _exit(kTimeout);
}

void Handle(int signal, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

}  // namespace

void HandleInterrupts() {
  Interpreter::Instance();
  Handle(SIGINT, OnInterrupt);
}

bool WasInterrupted() { return interrupts > 0; }

void ForgetInterrupt() {
  interrupts = 0;
  Interpreter::Instance().ClearInterrupt();
}

void SetTimeLimit(unsigned seconds, std::string words) {
  Interpreter::Instance();
  lastWords = new std::string(std::move(words));
  Handle(SIGALRM, OnAlarm);
  alarm(seconds);
}

void LiftTimeLimit() { alarm(0); }

bool IsTimeOver() { return isTimeOver; }

}  // namespace lomlisp::shell
