#include <shell/Options.h>

#include <shell/ExitStatus.h>

#include <getopt.h>

#include <charconv>
#include <string_view>

namespace lomlisp::shell {

namespace {

constexpr const char* kUsage =
    "lomsh: a LISP session with a drawing and client modules\n"
    "\n"
    "  lomsh [drawing.dxf] [options]\n"
    "\n"
    "  -m, --module FILE      loads a client module; may be repeated, like the next two\n"
    "  -s, --script FILE      evaluates the forms of a file; ends at the first one that fails\n"
    "  -e, --eval FORMS       evaluates the forms of a text\n"
    "  -k, --keep-going       goes on behind a form that failed\n"
    "  -i, --interactive      goes on to the prompt after the scripts; without scripts it does anyway\n"
    "      --save FILE        saves the drawing at the end, unless a script failed\n"
    "      --batch            asks nobody, and ends with a line of JSON in place of the output\n"
    "      --transcript FILE  writes all that the session shows to a file too\n"
    "      --check-memory     fails when a module has not released its memory at the end\n"
    "      --timeout SECONDS  ends scripts that take longer, with status 124\n"
    "  -h, --help\n"
    "\n"
    "Status: 0 when every form succeeded and no module misbehaved, 1 when not, 2 for a wrong command line "
    "and\n"
    "for files that cannot be read, 3 for files that cannot be written, 124 after a timeout.\n";

enum LongOption { kSave = 256, kBatch, kTranscript, kCheckMemory, kTimeLimit };

constexpr option kOptions[] = {{"module", required_argument, nullptr, 'm'},
                               {"script", required_argument, nullptr, 's'},
                               {"eval", required_argument, nullptr, 'e'},
                               {"keep-going", no_argument, nullptr, 'k'},
                               {"interactive", no_argument, nullptr, 'i'},
                               {"save", required_argument, nullptr, kSave},
                               {"batch", no_argument, nullptr, kBatch},
                               {"transcript", required_argument, nullptr, kTranscript},
                               {"check-memory", no_argument, nullptr, kCheckMemory},
                               {"timeout", required_argument, nullptr, kTimeLimit},
                               {"help", no_argument, nullptr, 'h'},
                               {nullptr, 0, nullptr, 0}};

ReadOptions Refused(const std::string& reason) {
  return {std::nullopt, "lomsh: " + reason + "\nlomsh --help tells the options\n", kBadInvocation};
}

std::optional<unsigned> ReadSeconds(std::string_view text) {
  unsigned seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  const bool isGood = error == std::errc() && end == text.data() + text.size() && seconds > 0;
  return isGood ? std::optional(seconds) : std::nullopt;
}

}  // namespace

ReadOptions ReadCommandLine(int count, char** words) {
  Options options;
  opterr = 0;
  for (int found = 0; (found = getopt_long(count, words, ":m:s:e:kih", kOptions, nullptr)) != -1;) {
    switch (found) {
      case 'm':
        options.modules.emplace_back(optarg);
        break;
      case 's':
        options.work.push_back({true, optarg});
        break;
      case 'e':
        options.work.push_back({false, optarg});
        break;
      case 'k':
        options.keepsGoing = true;
        break;
      case 'i':
        options.isInteractive = true;
        break;
      case kSave:
        options.save = optarg;
        break;
      case kBatch:
        options.isBatch = true;
        break;
      case kTranscript:
        options.transcript = optarg;
        break;
      case kCheckMemory:
        options.checksMemory = true;
        break;
      case kTimeLimit: {
        const auto seconds = ReadSeconds(optarg);
        if (!seconds)
          return Refused("--timeout: a number of seconds is expected, not \"" + std::string(optarg) + "\"");
        options.timeout = *seconds;
        break;
      }
      case 'h':
        return {std::nullopt, kUsage, 0};
      case ':':
        return Refused(std::string(words[optind - 1]) + ": something is missing behind it");
      default:
        return Refused(std::string(words[optind - 1]) + ": no such option");
    }
  }
  if (optind < count) options.drawing = words[optind++];
  if (optind < count)
    return Refused("one drawing at a time; \"" + std::string(words[optind]) + "\" is a second one");
  if (options.isBatch && options.isInteractive)
    return Refused("--batch and --interactive exclude each other");
  return {std::move(options), {}, 0};
}

}  // namespace lomlisp::shell
