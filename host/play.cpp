#include "host/play.h"

#include <ostream>

#include "adapters/files/temporary_folder.h"
#include "adapters/files/ticket_page.h"
#include "adapters/headless/scenario/player.h"
#include "base/number_text.h"
#include "host/machine.h"
#include "host/recorded_till.h"
#include "host/server_store.h"
#include "host/stage.h"
#include "host/store.h"
#include "host/store_copy.h"

namespace tpv {

namespace {

// Makes the store where it is missing and says how to open it. An existing one is
// left alone by --empty only while it holds no rows.
RecordedTill::Opener OpenFor(const PlayOptions& options, const std::string& store_path,
                             const Clock& clock) {
  const Contents contents = options.empty ? Contents::Empty : Contents::Demonstration;
  if (!options.server.empty()) {
    PrepareServer(options.server, contents, clock);
    return [&options] { return OpenServer(options.server); };
  }
  const bool existed = std::filesystem::exists(store_path);
  const auto store = OpenStore(store_path, contents, clock);
  if (existed && options.empty && HoldsRows(*store)) {
    throw UsageError("--empty: el almacén ya tiene datos");
  }
  return [&store_path, &clock] { return OpenExistingStore(store_path, clock); };
}

// Takes a picture before each command, so that the last is of what the script
// led to.
class Photographer final : public ui::Driver {
 public:
  Photographer(scenario::Player& player, Stage& stage) : player_(player), stage_(stage) {}
  bool Step() override {
    if (!player_.Over()) stage_.TakePicture();
    return player_.Step();
  }
  void OnBox(const ui::MessageBox& box) override { player_.OnBox(box); }
  bool GivesUp(const ui::Progress& progress) override { return player_.GivesUp(progress); }

 private:
  scenario::Player& player_;
  Stage& stage_;
};

bool PlayFile(const PlayOptions& options, const std::string& store_path, Stage& stage,
              std::vector<scenario::Command> commands, std::ostream& transcript) {
  StepClock clock;
  clock.fixed = options.now;
  RecordedTill till(OpenFor(options, store_path, clock), stage.FrontEnd(), clock, options.user);
  const Machine machine;
  till.tables.real = machine.tables.get();
  const DocumentFolder paper(options.paper, clock);
  const auto codes = MakeCodeEncoder();
  if (!options.paper.empty()) {
    till.printers.copy = [&paper, &codes] {
      return std::make_unique<PageRecorder>(
          *codes, [&paper](const TicketPage& page) { paper.Save("Ticket", TicketFiles(page)); });
    };
  }
  scenario::Player player(till.rig, stage.Hands(), transcript);
  Photographer photographer(player, stage);
  const bool pictures = !options.screenshots.empty();
  stage.SetDriver(pictures ? static_cast<ui::Driver&>(photographer) : player);
  return player.Play(std::move(commands));
}

std::string ValueOf(const std::vector<std::string>& arguments, std::size_t& at) {
  if (at + 1 >= arguments.size()) throw UsageError(arguments[at] + ": falta el valor");
  return arguments[++at];
}

ScreenSize ReadScreen(const std::string& text) {
  const std::size_t cross = text.find('x');
  const auto width = ParseInt32(text.substr(0, cross));
  const auto height = ParseInt32(cross == std::string::npos ? "" : text.substr(cross + 1));
  if (!width || !height || *width < 640 || *height < 480) {
    throw UsageError("--screen: se espera ANCHOxALTO, como 1024x768");
  }
  return {*width, *height};
}

}  // namespace

PlayOptions ReadPlayOptions(const std::vector<std::string>& arguments) {
  PlayOptions options;
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    const std::string& argument = arguments[at];
    if (argument == "--store") {
      options.store = ValueOf(arguments, at);
    } else if (argument == "--paper") {
      options.paper = ValueOf(arguments, at);
    } else if (argument == "--empty") {
      options.empty = true;
    } else if (argument == "--ui") {
      const std::string front_end = ValueOf(arguments, at);
      if (front_end != "headless" && front_end != "qt") throw UsageError("--ui: headless o qt");
      options.windows = front_end == "qt";
    } else if (argument == "--screenshots") {
      options.screenshots = ValueOf(arguments, at);
    } else if (argument == "--screen") {
      options.screen = ReadScreen(ValueOf(arguments, at));
    } else if (argument == "--user") {
      const auto user = ParseInt32(ValueOf(arguments, at));
      if (!user) throw UsageError("--user: se espera un número");
      options.user = *user;
    } else if (argument == "--now") {
      options.now = ParseDayFirst(ValueOf(arguments, at));
      if (!options.now) throw UsageError("--now: se espera \"dd/mm/aaaa hh:mm:ss\"");
    } else if (argument == "--odbc") {
      options.server = ValueOf(arguments, at);
    } else if (argument.starts_with("--")) {
      throw UsageError("opción desconocida: " + argument);
    } else {
      options.files.push_back(argument);
    }
  }
  if (!options.server.empty() && !options.store.empty()) {
    throw UsageError("--store y --odbc no van juntos");
  }
  if (options.files.empty()) throw UsageError("falta el guion que reproducir");
  if ((!options.screenshots.empty() || options.screen.width > 0) && !options.windows) {
    throw UsageError("--screenshots y --screen: solo con --ui qt");
  }
  return options;
}

int Play(const PlayOptions& options, std::ostream& transcript) {
  std::vector<std::vector<scenario::Command>> scripts;
  for (const std::string& file : options.files) scripts.push_back(scenario::ReadScript(file));
  const auto theatre = options.windows ? WindowTheatre(options.screen) : HeadlessTheatre();
  bool held = true;
  for (std::size_t i = 0; i < scripts.size(); ++i) {
    const TemporaryFolder folder;
    const std::string path = options.store.empty() ? folder / "tienda.db" : options.store;
    const auto stage = theatre->SetUp();
    held = PlayFile(options, path, *stage, std::move(scripts[i]), transcript) && held;
    transcript.flush();
    if (options.screenshots.empty()) continue;
    const std::string picture = std::filesystem::path(options.files[i]).stem().string() + ".png";
    stage->SavePicture((std::filesystem::path(options.screenshots) / picture).string());
  }
  return held ? 0 : 1;
}

}  // namespace tpv
