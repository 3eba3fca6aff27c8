#include "host/interface/playing.h"

#include <sstream>

#include "adapters/headless/scenario/headless_operator.h"
#include "adapters/headless/scenario/player.h"
#include "host/known_settings.h"
#include "host/interface/handles.h"
#include "host/interface/till_database.h"

namespace tpv::interface {

namespace {

// What the till works with while a scenario plays; the host may keep objects out
// of it for longer.
struct Rehearsal {
  Rehearsal(std::shared_ptr<Surroundings> surroundings, std::shared_ptr<DatabaseObject> real)
      : around(std::move(surroundings)), database(std::move(real)), objects(*around) {
    objects.SetPorts(ports);
  }

  std::shared_ptr<Surroundings> around;
  std::shared_ptr<DatabaseObject> database;
  RecordingPrinters printers;
  RecordingDevices devices;
  MemorySettings settings;
  StepClock clock;
  RecordingMailer mail;
  RecordingReports reports;
  RecordingSound sound;
  RecordingTables tables;
  HostComponents objects;
  Ports ports{
      *around->headless(), printers, devices, settings, clock, mail, reports, objects, sound, nullptr, nullptr,
      &tables};
};

// The host's context goes in, what the scenario made of it comes out.
void CopyContext(const Context& from, Context& to) {
  to.IdCliente = from.IdCliente;
  to.Caja = from.Caja;
  to.IdAgente = from.IdAgente;
  to.IdAlbaran = from.IdAlbaran;
}

class Performance {
 public:
  Performance(zrtpv_till& till, Zrtpve& component) : till_(till), component_(component) {
    till_.playing = true;
    CopyContext(till_.component.context(), component_.context());
  }
  ~Performance() {
    CopyContext(component_.context(), till_.component.context());
    till_.around->LeaveAlone();
    till_.playing = false;
  }
  Performance(const Performance&) = delete;
  Performance& operator=(const Performance&) = delete;

 private:
  zrtpv_till& till_;
  Zrtpve& component_;
};

void RequirePlayable(zrtpv_till& till) {
  if (till.around->headless() == nullptr) {
    throw Fault(ZRTPV_E_WINDOWS, "Un guion se reproduce en un objeto sin ventanas");
  }
  if (till.playing) throw Fault(ZRTPV_E_BUSY, "Ya se está reproduciendo un guion");
  if (!till.component.context().MyBd) throw ObjectError("ZRTPVE: falta MyBd");
}

std::shared_ptr<TillDatabase> DatabaseFor(const std::shared_ptr<Rehearsal>& rehearsal,
                                          RecordingConnection*& recorded) {
  DatabaseObject& real = *rehearsal->database;
  auto connection = std::make_unique<RecordingConnection>(real.Conexion());
  recorded = connection.get();
  return std::make_shared<TillDatabase>(
      OwnedConnection{rehearsal, std::move(connection)}, real.IdUsuario(),
      *rehearsal->around->headless(), rehearsal->clock, rehearsal->settings,
      [&real](std::string_view name) { return real.Parametro(name); });
}

}  // namespace

bool PlayOn(zrtpv_till& till, const std::string& script, std::ostream& transcript) {
  RequirePlayable(till);
  std::istringstream text(script);
  auto commands = scenario::ReadScript(text, "guion");
  const auto stage = std::make_shared<Rehearsal>(till.around, till.component.context().MyBd);
  RecordingConnection* connection = nullptr;
  const auto database = DatabaseFor(stage, connection);
  std::optional<Zrtpve> component(std::in_place, stage->ports);
  component->context().MyBd = database;
  HeadlessFrontEnd& front_end = *till.around->headless();
  scenario::HeadlessOperator hands(front_end);
  scenario::Rig rig{*connection, stage->clock,   stage->printers, stage->devices, stage->settings,
                    stage->mail, stage->reports, stage->sound,    component,      {}, &stage->tables};
  rig.premises.configure = [&](const std::string& name, const std::string& value) {
    ChangeSetting(stage->settings, name, value);
  };
  scenario::Player player(rig, hands, transcript);
  const Performance performance(till, *component);
  front_end.SetDriver(player);
  return player.Play(std::move(commands));
}

}  // namespace tpv::interface
