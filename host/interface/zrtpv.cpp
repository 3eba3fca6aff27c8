// The functions of include/zrtpv.h about tills and their members.
#include "include/zrtpv.h"

#include <filesystem>
#include <sstream>

#include "component/dispatch.h"
#include "host/demo/demonstration.h"
#include "host/interface/handles.h"
#include "host/interface/host_database.h"
#include "host/interface/playing.h"
#include "host/interface/structs.h"
#include "host/interface/till_database.h"
#include "host/interface/values.h"
#include "host/server_store.h"
#include "host/store.h"

namespace tpv::interface {
namespace {

// A call of a till under way.
class Entered {
 public:
  explicit Entered(zrtpv_till* till) : till_(Tills().Find(till)) { ++till_->calls; }
  ~Entered() {
    if (--till_->calls > 0) return;
    till_->around->Settle(till_->component.context());
    till_->around->PassOnNotices();
  }
  Entered(const Entered&) = delete;
  Entered& operator=(const Entered&) = delete;
  zrtpv_till& operator*() { return *till_; }
  zrtpv_till* operator->() { return till_.get(); }

 private:
  std::shared_ptr<zrtpv_till> till_;
};

zrtpv_till* Create(const zrtpv_options* given) {
  zrtpv_options options{};
  if (given != nullptr) options = Copied(*given);
  return Tills().Add(std::make_shared<zrtpv_till>(std::make_shared<Surroundings>(options)));
}

void Release(zrtpv_till* till) {
  if (Tills().Find(till)->calls > 0) {
    throw Fault(ZRTPV_E_BUSY, "Una llamada del objeto está en curso");
  }
  const std::shared_ptr<zrtpv_till> held = Tills().Find(till);
  const std::shared_ptr<Surroundings> around = held->around;
  around->EndErrands(held->component.context());
  Tills().Remove(till);
  around->Finish();
}

// What is under way works on the connection of the database object that it found.
void RequireIdle(const zrtpv_till& till) {
  if (till.calls > 1) throw Fault(ZRTPV_E_BUSY, "MyBd no se cambia durante otra llamada del objeto");
}

using Opener = StoreErrands::Opener;

void Use(zrtpv_till& till, std::unique_ptr<Connection> connection, std::int32_t user, Opener reopen,
         TillDatabase::Parameters parameters = {}) {
  RequireIdle(till);
  const auto& around = till.around;
  Context& context = till.component.context();
  around->EndErrands(context);  // with the store that they are for
  context.MyBd = std::make_shared<TillDatabase>(
      OwnedConnection{around, std::move(connection), std::move(reopen)}, user, around->ports().ui,
      around->machine().clock, around->machine().settings, std::move(parameters));
}

void OpenFile(zrtpv_till& till, const std::string& path, std::int32_t if_missing,
              std::int32_t user) {
  const Clock& clock = till.around->machine().clock;
  if (if_missing < ZRTPV_MUST_EXIST || if_missing > ZRTPV_MAKE_DEMO) {
    throw Fault(ZRTPV_E_ARGUMENT, "if_missing: un valor que no existe");
  }
  const Opener reopen = [whole = std::filesystem::absolute(path).string(), &clock] {
    return OpenExistingStore(whole, clock);
  };
  const auto contents =
      if_missing == ZRTPV_MAKE_EMPTY ? Contents::Empty : Contents::Demonstration;
  auto store = if_missing == ZRTPV_MUST_EXIST ? reopen() : OpenStore(path, contents, clock);
  const std::string missing = MissingLogOf(*store);
  till.around->ports().ui.SetBanner(BannerOf(*store));
  Use(till, std::move(store), user, reopen);
  if (!missing.empty()) till.around->ports().ui.Notify({missing, {}});
}

void OpenHost(zrtpv_till& till, const zrtpv_database& given) {
  const zrtpv_database functions = Copied(given);
  auto connection = std::make_unique<HostConnection>(functions, till.around);
  TillDatabase::Parameters parameters;
  if (connection->HasParameters()) {
    parameters = [raw = connection.get()](std::string_view name) { return raw->Parameter(name); };
  }
  Use(till, std::move(connection), functions.user, nullptr, std::move(parameters));
}

InvokeKind KindFrom(std::int32_t kind) {
  if (kind < ZRTPV_GET || kind > ZRTPV_CALL) throw Fault(ZRTPV_E_KIND, "No existe esa forma de uso");
  return static_cast<InvokeKind>(kind);
}

bool IsDatabase(std::uint32_t id) { return id == DispatchId("MyBd"); }

void Run(Entered& till, std::uint32_t id, InvokeKind kind, zrtpv_value* host, std::size_t count,
         zrtpv_value* result) {
  ResultSlot slot(result);
  Context& context = till->component.context();
  if (IsDatabase(id) && kind != InvokeKind::Get) {
    RequireIdle(*till);
    till->around->EndErrands(context);
  }
  till->around->Serve(context);
  Arguments arguments(host, count);
  const Variant value = Invoke(till->component, id, kind, arguments.values());
  arguments.WriteBack(till->around);
  slot.Give(value, till->around);
}

std::uint32_t IdOf(const char* name) { return DispatchId(TextFrom(name, "el nombre")); }

std::vector<zrtpv_member> MemberTable() {
  std::vector<zrtpv_member> table;
  for (const Member& member : Members()) {
    table.push_back({member.name.data(), member.id, member.property ? 1 : 0, member.arguments});
  }
  return table;
}

}  // namespace
}  // namespace tpv::interface

using namespace tpv::interface;

const char* zrtpv_version(void) { return tpv::kVersion.data(); }
uint32_t zrtpv_abi(void) { return ZRTPV_ABI; }
const char* zrtpv_error(void) { return LastText(); }
int32_t zrtpv_error_code(void) { return LastStatus(); }
void zrtpv_fail(const char* text) { SetCallbackText(text); }

int32_t zrtpv_create(const zrtpv_options* options, zrtpv_till** till) {
  return Answer([&] {
    Required(till, "dónde dejar el objeto") = nullptr;
    *till = Create(options);
  });
}

int32_t zrtpv_release(zrtpv_till* till) {
  return Answer([&] { Release(till); });
}

int32_t zrtpv_open_file(zrtpv_till* till, const char* path, int32_t if_missing, int32_t user) {
  return Answer([&] {
    Entered entered(till);
    OpenFile(*entered, TextFrom(path, "el almacén"), if_missing, user);
  });
}

int32_t zrtpv_open_odbc(zrtpv_till* till, const char* connection, int32_t user) {
  return Answer([&] {
    Entered entered(till);
    const Opener reopen = [name = std::string(TextFrom(connection, "la conexión"))] {
      return tpv::OpenServerStore(name);
    };
    Use(*entered, reopen(), user, reopen);
  });
}

int32_t zrtpv_open_host(zrtpv_till* till, const zrtpv_database* database) {
  return Answer([&] {
    Entered entered(till);
    OpenHost(*entered, Required(database, "la conexión"));
  });
}

size_t zrtpv_members(const zrtpv_member** members) {
  static const auto& table = *new std::vector<zrtpv_member>(MemberTable());
  if (members != nullptr) *members = table.data();
  return table.size();
}

int32_t zrtpv_id(const char* name, uint32_t* id) {
  return Answer([&] { Required(id, "dónde dejar el id") = IdOf(name); });
}

int32_t zrtpv_invoke(zrtpv_till* till, uint32_t id, int32_t kind, zrtpv_value* arguments,
                     size_t count, zrtpv_value* result) {
  return Answer([&] {
    Entered entered(till);
    Run(entered, id, KindFrom(kind), arguments, count, result);
  });
}

int32_t zrtpv_invoke_name(zrtpv_till* till, const char* name, int32_t kind, zrtpv_value* arguments,
                          size_t count, zrtpv_value* result) {
  return Answer([&] {
    Entered entered(till);
    Run(entered, IdOf(name), KindFrom(kind), arguments, count, result);
  });
}

int32_t zrtpv_get(zrtpv_till* till, const char* property, zrtpv_value* result) {
  return zrtpv_invoke_name(till, property, ZRTPV_GET, nullptr, 0, result);
}

int32_t zrtpv_put(zrtpv_till* till, const char* property, const zrtpv_value* value) {
  return Answer([&] {
    Entered entered(till);
    const std::uint32_t id = IdOf(property);
    zrtpv_value argument = Required(value, "el valor");
    argument.owned = 0;
    const auto kind = IsDatabase(id) ? tpv::InvokeKind::PutReference : tpv::InvokeKind::Put;
    Run(entered, id, kind, &argument, 1, nullptr);
  });
}

int32_t zrtpv_call(zrtpv_till* till, const char* method, zrtpv_value* arguments, size_t count,
                   zrtpv_value* result) {
  return zrtpv_invoke_name(till, method, ZRTPV_CALL, arguments, count, result);
}

int32_t zrtpv_play(zrtpv_till* till, const char* script, zrtpv_value* transcript) {
  return Answer([&] {
    ResultSlot slot(transcript);
    Entered entered(till);
    std::ostringstream text;
    const bool held = PlayOn(*entered, TextFrom(script, "el guion"), text);
    slot.Give(tpv::Variant(text.str()), entered->around);
    if (!held) throw Fault(ZRTPV_E_EXPECTATION, "Algo del guion no se cumplió");
  });
}
