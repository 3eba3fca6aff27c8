// Any bytes as the calls of a host that keeps the header's word on memory and
// nothing else: every function, any member, any value, stale and invented
// handles, callbacks that answer nonsense. Each call ends with a status.
#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cstdlib>
#include <deque>
#include <fstream>

#include "adapters/files/temporary_folder.h"
#include "base/text.h"
#include "include/zrtpv.h"

namespace {

using Names = std::vector<std::string>;

const Names kMembers = tpv::Split(
    "IdCliente Caja IdAgente IdAlbaran MyBd zTpv zDiario zAperturaCierre zMovCaja zFacturacion "
    "zDiarioCaja Abre_Cajon zInfPendienteCobro Emite_Ticket zFindByName msCancelaVenta "
    "fnPendienteCliente NoHay", " ");
const Names kObjectMembers = tpv::Split(
    "Conexion IdUsuario xlsCampos Tabla BeginTrans Where Parametros Insert Update Add Execute "
    "CommitTrans RollbackTrans Fields Name MoveNext Close EOF RecordCount NoHay", " ");
const Names kTexts = tpv::Split(
    "|1|-1,5|1e308|24/11/2026|Cav|Cav_Ref|Par_NumCaja| WHERE Cav_Id = 1|SELECT TOP 2 * FROM Cav|"
    "SELECT COUNT(*) FROM Lav|DELETE FROM Lav WHERE Lav_Id = 1|call zTpv\nclose\n|2026-11-24|"
    "call zTpv\nclick cmdApertura\nenter Text1(14) 5\nclose\nsql SELECT 1|\xC3\x28|ñ€😀|"
    "set Caja 2\nexpect property Caja 3\nfails call msCancelaVenta x", "|");

// A shop of few rows, made once and put back before every input.
class Shop {
 public:
  Shop() {
    std::ofstream(settings) << "[TPV/Paper]\nTickets=" << (folder_ / "paper") << "\n";
    zrtpv_till* till = Create(nullptr);
    if (zrtpv_open_file(till, path.c_str(), ZRTPV_MAKE_EMPTY, 1) != ZRTPV_OK) std::abort();
    zrtpv_release(till);
    std::filesystem::copy(path, folder_ / "kept.db");
  }
  zrtpv_till* Create(const zrtpv_components* components) const {
    zrtpv_options options{sizeof options, 0, settings.c_str(), components, nullptr, nullptr};
    zrtpv_till* till = nullptr;
    if (zrtpv_create(&options, &till) != ZRTPV_OK) std::abort();
    return till;
  }
  void PutBack() const {
    for (const char* rest : {"-wal", "-shm"}) std::filesystem::remove(path + rest);
    std::filesystem::copy(folder_ / "kept.db", path, std::filesystem::copy_options::overwrite_existing);
  }

 private:
  const tpv::TemporaryFolder folder_;

 public:
  const std::string path = folder_ / "tienda.db";
  const std::string settings = folder_ / "tpv.conf";
};

const Shop& TheShop() {
  static const Shop shop;
  return shop;
}

class Host {
 public:
  Host(const std::uint8_t* data, std::size_t size) : data_(data, size) {
    zrtpv_open_file(till_, TheShop().path.c_str(), ZRTPV_MUST_EXIST, 1);
  }
  ~Host() {
    for (zrtpv_value& value : values_) zrtpv_clear(&value);
    if (zrtpv_release(till_) != ZRTPV_OK) std::abort();
  }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  void Run() {
    constexpr int kMostCalls = 60;
    for (int i = 0; i < kMostCalls && data_.remaining_bytes() > 0; ++i) Step();
  }

 private:
  // The status and its text belong together.
  static void Check(std::int32_t status) {
    const bool known = status >= ZRTPV_OK && status <= ZRTPV_E_OTHER && status == zrtpv_error_code();
    if (!known || (status == ZRTPV_OK) != (*zrtpv_error() == '\0')) std::abort();
  }

  int Below(int end) { return data_.ConsumeIntegralInRange(0, end - 1); }
  zrtpv_value& Slot() { return values_[Below(static_cast<int>(values_.size()))]; }
  const char* Name(const Names& names) {
    return Below(16) == 0 ? nullptr : names[Below(static_cast<int>(names.size()))].c_str();
  }
  const char* Member() { return Name(kMembers); }
  const char* Text() {
    const int kind = Below(40);
    if (kind == 0) return texts_.emplace_back(100'000, data_.ConsumeIntegral<char>()).c_str();
    return kind < 4 ? texts_.emplace_back(data_.ConsumeRandomLengthString()).c_str() : Name(kTexts);
  }
  zrtpv_till* Till() {
    const int which = Below(16);
    if (which == 0) return nullptr;
    if (which == 1) return reinterpret_cast<zrtpv_till*>(this);
    return which == 2 ? stale_till_ : till_;
  }
  zrtpv_object* Object() {
    const zrtpv_value& slot = Slot();
    if (slot.type == ZRTPV_OBJECT) return last_object_ = slot.as.object;
    return Below(2) == 0 ? last_object_ : reinterpret_cast<zrtpv_object*>(this);
  }

  zrtpv_value Value() {
    zrtpv_value value = zrtpv_null();
    value.type = Below(12) - 1;
    if (value.type == ZRTPV_TEXT) {
      const char* text = Text();
      value.as.text = {text, text == nullptr ? Below(2) : std::char_traits<char>::length(text)};
    } else if (value.type == ZRTPV_DOUBLE) {
      value.as.number = data_.ConsumeFloatingPoint<double>();
    } else if (value.type == ZRTPV_OBJECT) {
      value.as.object = Object();
    } else {
      data_.ConsumeData(&value.as, sizeof(zrtpv_date));
    }
    return value;
  }

  // Up to four arguments; what comes back in them is released.
  template <typename Function>
  void With(Function call) {
    std::array<zrtpv_value, 4> values{};
    const auto count = static_cast<std::size_t>(Below(5));
    for (std::size_t i = 0; i < count; ++i) values[i] = Value();
    Check(call(values.data(), count));
    for (zrtpv_value& value : values) zrtpv_clear(&value);
  }

  // A result overwrites what is there without releasing it.
  zrtpv_value* Result() {
    zrtpv_value* slot = Below(2) == 0 ? nullptr : &Slot();
    if (slot != nullptr) zrtpv_clear(slot);
    return slot;
  }

  void Step() {
    std::uint32_t id = 0;
    zrtpv_value value = zrtpv_null();
    switch (Below(14)) {
      case 0: return Check(zrtpv_get(Till(), Member(), Result()));
      case 1: value = Value(); return Check(zrtpv_put(Till(), Member(), Below(8) ? &value : nullptr));
      case 2: return With([&](auto* of, auto count) { return zrtpv_call(Till(), Member(), of, count, Result()); });
      case 3: return Invoke();
      case 4: return Check(zrtpv_object_get(Object(), Name(kObjectMembers), Result()));
      case 5: value = Value(); return Check(zrtpv_object_put(Object(), Name(kObjectMembers), &value));
      case 6:
        return With([&](auto* of, auto count) {
          return zrtpv_object_call(Object(), Name(kObjectMembers), of, count, Result());
        });
      case 7: return Check(zrtpv_clear(Below(8) ? &Slot() : nullptr));
      case 8: return Retain();
      case 9: return Renew();
      case 10: return Check(zrtpv_open_file(Till(), Below(4) ? TheShop().path.c_str() : Text(), Below(8) ? 0 : -1, 1));
      case 11: return Check(zrtpv_play(Till(), Text(), Result()));
      case 12: return OpenHost();
      default: return Check(zrtpv_id(Member(), &id));
    }
  }

  void Invoke() {
    const zrtpv_member* members = nullptr;
    const auto count = static_cast<int>(zrtpv_members(&members));
    const auto id = Below(4) ? members[Below(count)].id : data_.ConsumeIntegral<std::uint32_t>();
    With([&](auto* of, auto given) { return zrtpv_invoke(Till(), id, Below(6) - 1, of, given, Result()); });
  }
  // A second slot of the same object is a reference more.
  void Retain() {
    const zrtpv_value& from = Slot();
    zrtpv_value& to = Slot();
    if (&from == &to || from.type != ZRTPV_OBJECT) return;
    zrtpv_clear(&to);
    Check(zrtpv_object_retain(from.as.object));
    to = from;
  }
  void Renew() {
    const std::int32_t status = zrtpv_release(till_);
    Check(status);
    if (status != ZRTPV_OK) return;  // in a callback
    stale_till_ = till_;
    const zrtpv_components components = Components();
    till_ = TheShop().Create(Below(2) ? &components : nullptr);
  }

  // --- Callbacks: some fail, some call back, none tells the truth ---

  static Host& Of(void* host) { return *static_cast<Host*>(host); }

  std::int32_t Status() {
    const int status = Below(40);
    if (status > ZRTPV_E_OTHER) return ZRTPV_OK;
    zrtpv_fail(Text());
    return status;
  }
  std::int32_t Answer(zrtpv_value* result) {
    if (depth_ < 2 && data_.remaining_bytes() > 0 && Below(8) == 0) {
      ++depth_;
      Step();
      --depth_;
    }
    if (Below(2)) *result = Value();
    return Status();
  }
  std::int32_t Give(void** what) {
    if (Below(2)) *what = this;
    return Status();
  }

  zrtpv_components Components() {
    return {sizeof(zrtpv_components), this,
            [](void* host, const char*, void** component) { return Of(host).Give(component); },
            [](void* host, void*, const char*, zrtpv_value* result) { return Of(host).Answer(result); },
            [](void* host, void*, const char*, const zrtpv_value*) { return Of(host).Status(); },
            [](void* host, void*, const char*, zrtpv_value* arguments, std::size_t count,
               zrtpv_value* result) {
              if (count > 0) Of(host).Answer(&arguments[0]);
              return Of(host).Answer(result);
            },
            [](void*, void*) {}};
  }

  void OpenHost() {
    zrtpv_database table{};
    table.size = Below(8) ? std::uint32_t{sizeof table} : data_.ConsumeIntegral<std::uint32_t>();
    table.host = this;
    table.execute = [](void* host, const char*, void** rows) { return Of(host).Give(rows); };
    table.columns = [](void* host, void*, std::size_t* count) {
      *count = static_cast<std::size_t>(Of(host).Below(20));
      return Of(host).Status();
    };
    table.column = [](void* host, void*, std::size_t, const char** name) {
      *name = Of(host).Text();
      return Of(host).Status();
    };
    table.next = [](void* host, void*, std::int32_t* found) {
      *found = Of(host).data_.remaining_bytes() > 0 ? 1 : 0;
      return Of(host).Status();
    };
    table.field = [](void* host, void*, std::size_t, zrtpv_value* value) { return Of(host).Answer(value); };
    table.close = [](void*, void*) {};
    table.begin = table.commit = table.rollback = [](void* host) { return Of(host).Status(); };
    if (Below(2)) {
      table.parameter = [](void* host, const char*, zrtpv_value* value) { return Of(host).Answer(value); };
    }
    Check(zrtpv_open_host(Till(), &table));
  }

  FuzzedDataProvider data_;
  zrtpv_till* till_ = TheShop().Create(nullptr);
  zrtpv_till* stale_till_ = till_;
  zrtpv_object* last_object_ = nullptr;
  std::array<zrtpv_value, 8> values_{};
  std::deque<std::string> texts_;
  int depth_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TheShop().PutBack();
  Host(data, size).Run();
  return 0;
}
