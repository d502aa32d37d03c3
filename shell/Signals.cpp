#include <shell/Signals.h>

#include <shell/ExitStatus.h>
#include <shell/Interpreter.h>

#include <embedded/Host.h>

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <string_view>
#include <utility>

namespace lomlisp::shell {

namespace {

constexpr unsigned kGraceSeconds = 2;
constexpr int kInterrupted = 128 + SIGINT;

std::atomic<int> interrupts = 0;
std::atomic<bool> isTimeOver = false;

// A signal handler reads it: another one takes its place at once, and only then is it freed.
std::atomic<const std::string*> lastWords = nullptr;

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
  if (const std::string* const words = lastWords) WriteFully(STDOUT_FILENO, *words);
  _exit(kTimeout);
}

// The default action follows when the handler is left: it stands for one signal only.
void OnCrash(int) {
  const embedded::Host::Frame* const frame = embedded::Host::Instance().CurrentFrame();
  WriteFully(STDERR_FILENO, "\nlomsh: a crash");
  if (frame != nullptr) {
    WriteFully(STDERR_FILENO, " in ");
    WriteFully(STDERR_FILENO, frame->name);
  }
  WriteFully(STDERR_FILENO, "\n");
}

void Handle(int signal, void (*handler)(int), int flags) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

bool IsHandled(int signal) {
  struct sigaction action = {};
  sigaction(signal, nullptr, &action);
  return action.sa_handler != SIG_DFL;
}

// Where the stack is full a handler needs one of its own.
void MakeHandlerStack() {
  static std::array<char, 65536> memory;
  stack_t stack = {};
  stack.ss_sp = memory.data();
  stack.ss_size = memory.size();
  sigaltstack(&stack, nullptr);
}

}  // namespace

void HandleInterrupts() {
  Interpreter::Instance();
  Handle(SIGINT, OnInterrupt, SA_RESTART);
}

void HandleCrashes() {
  constexpr int kCrashes[] = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};
  if (IsHandled(SIGSEGV)) return;
  MakeHandlerStack();
  for (const int crash : kCrashes) Handle(crash, OnCrash, static_cast<int>(SA_ONSTACK | SA_RESETHAND));
}

bool WasInterrupted() { return interrupts > 0; }

void ForgetInterrupt() {
  interrupts = 0;
  Interpreter::Instance().ClearInterrupt();
}

void SetLastWords(std::string words) { delete lastWords.exchange(new std::string(std::move(words))); }

void SetTimeLimit(unsigned seconds) {
  Interpreter::Instance();
  Handle(SIGALRM, OnAlarm, SA_RESTART);
  alarm(seconds);
}

void LiftTimeLimit() { alarm(0); }

bool IsTimeOver() { return isTimeOver; }

}  // namespace lomlisp::shell
