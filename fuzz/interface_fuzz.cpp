// Any bytes as the calls of a host that keeps the header's word on memory and
// nothing else: every function, any member, any value, stale and invented
// handles, callbacks that answer nonsense. Each call ends with a status.
#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cstdlib>
#include <deque>
#include <fstream>

#include "adapters/files/temporary_folder.h"
#include "include/zrtpv.h"

namespace {

const std::array kMembers = {
    "IdCliente",    "Caja",         "IdAgente",           "IdAlbaran",      "MyBd",
    "zTpv",         "zDiario",      "zAperturaCierre",    "zMovCaja",       "zFacturacion",
    "zDiarioCaja",  "Abre_Cajon",   "zInfPendienteCobro", "Emite_Ticket",   "zFindByName",
    "msCancelaVenta", "fnPendienteCliente", "NoHay"};

const std::array kObjectMembers = {
    "Conexion", "IdUsuario",   "xlsCampos",     "Tabla",  "BeginTrans", "Where",       "Parametros",
    "Insert",   "Update",      "Add",           "Execute", "CommitTrans", "RollbackTrans", "Fields",
    "Name",     "MoveNext",    "Close",         "EOF",    "RecordCount", "NoHay"};

const std::array kTexts = {
    "",
    "1",
    "-1,5",
    "1e308",
    "24/11/2026",
    "Cav",
    "Cav_Ref",
    "Par_NumCaja",
    " WHERE Cav_Id = 1",
    "SELECT TOP 2 * FROM Cav",
    "SELECT COUNT(*) FROM Lav",
    "DELETE FROM Lav WHERE Lav_Id = 1",
    "call zTpv\nclose\n",
    "call zTpv\nclick cmdApertura\nenter Text1(14) 5\nclose\nsql SELECT 1",
    "set Caja 2\nexpect property Caja 3\nfails call msCancelaVenta x",
    "2026-11-24",
    "\xC3\x28",
    "ñ€😀"};

// A shop of few rows, made once and put back before every input.
class Shop {
 public:
  Shop() {
    std::ofstream(folder_ / "tpv.conf") << "[TPV/Paper]\nTickets=" << (folder_ / "paper") << "\n";
    zrtpv_till* till = Create(nullptr);
    if (zrtpv_open_file(till, path().c_str(), ZRTPV_MAKE_EMPTY, 1) != ZRTPV_OK) std::abort();
    zrtpv_release(till);
    std::filesystem::copy(path(), folder_ / "kept.db");
  }
  zrtpv_till* Create(const zrtpv_components* components) {
    const std::string settings = folder_ / "tpv.conf";
    zrtpv_options options{};
    options.size = sizeof options;
    options.settings = settings.c_str();
    options.components = components;
    zrtpv_till* till = nullptr;
    if (zrtpv_create(&options, &till) != ZRTPV_OK) std::abort();
    return till;
  }
  void PutBack() {
    for (const char* rest : {"-wal", "-shm", "-journal"}) std::filesystem::remove(path() + rest);
    std::filesystem::copy(folder_ / "kept.db", path(),
                          std::filesystem::copy_options::overwrite_existing);
  }
  std::string path() const { return folder_ / "tienda.db"; }

 private:
  const tpv::TemporaryFolder folder_;
};

Shop& TheShop() {
  static Shop shop;
  return shop;
}

class Host {
 public:
  Host(const std::uint8_t* data, std::size_t size) : data_(data, size) {
    till_ = TheShop().Create(nullptr);
    zrtpv_open_file(till_, TheShop().path().c_str(), ZRTPV_MUST_EXIST, 1);
    stale_till_ = till_;
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
  static constexpr std::size_t kValues = 8;

  // The status and its text belong together.
  static void Check(std::int32_t status) {
    if (status < ZRTPV_OK || status > ZRTPV_E_OTHER || status != zrtpv_error_code() ||
        (status == ZRTPV_OK) != (*zrtpv_error() == '\0')) {
      std::abort();
    }
  }

  zrtpv_value& Slot() { return values_[data_.ConsumeIntegralInRange<std::size_t>(0, kValues - 1)]; }
  zrtpv_value* AnySlot() { return data_.ConsumeBool() ? &Slot() : nullptr; }
  template <std::size_t Count>
  const char* Name(const std::array<const char*, Count>& names) {
    return data_.ConsumeIntegralInRange(0, 15) == 0 ? nullptr : data_.PickValueInArray(names);
  }
  const char* Member() { return Name(kMembers); }
  const char* ObjectMember() { return Name(kObjectMembers); }
  const char* Text() {
    switch (data_.ConsumeIntegralInRange(0, 40)) {
      case 0: return nullptr;
      case 1:
      case 2:
      case 3: return texts_.emplace_back(data_.ConsumeRandomLengthString()).c_str();
      case 4: return texts_.emplace_back(100'000, data_.ConsumeIntegral<char>()).c_str();
      default: return data_.PickValueInArray(kTexts);
    }
  }
  zrtpv_till* Till() {
    const int which = data_.ConsumeIntegralInRange(0, 15);
    if (which == 0) return nullptr;
    if (which == 1) return reinterpret_cast<zrtpv_till*>(this);
    return which == 2 ? stale_till_ : till_;
  }
  zrtpv_object* Object() {
    const zrtpv_value& slot = Slot();
    if (slot.type == ZRTPV_OBJECT) return last_object_ = slot.as.object;
    return data_.ConsumeBool() ? last_object_ : reinterpret_cast<zrtpv_object*>(this);
  }

  zrtpv_value Value() {
    zrtpv_value value = zrtpv_null();
    value.type = data_.ConsumeIntegralInRange(-1, 10);
    switch (value.type) {
      case ZRTPV_TEXT: {
        const char* text = Text();
        value.as.text = {text, text == nullptr ? data_.ConsumeIntegralInRange<std::size_t>(0, 1)
                                               : std::char_traits<char>::length(text)};
        break;
      }
      case ZRTPV_DOUBLE: value.as.number = data_.ConsumeFloatingPoint<double>(); break;
      case ZRTPV_OBJECT: value.as.object = Object(); break;
      case ZRTPV_DATE:
        value.as.date = {data_.ConsumeIntegral<std::int16_t>(), data_.ConsumeIntegral<std::int8_t>(),
                         data_.ConsumeIntegral<std::int8_t>(),  data_.ConsumeIntegral<std::int8_t>(),
                         data_.ConsumeIntegral<std::int8_t>(),  data_.ConsumeIntegral<std::int8_t>(),
                         data_.ConsumeIntegral<std::int16_t>()};
        break;
      default: value.as.int64 = data_.ConsumeIntegral<std::int64_t>();
    }
    return value;
  }

  struct Arguments {
    std::array<zrtpv_value, 4> values;
    std::size_t count;
    zrtpv_value* data;
    ~Arguments() {
      for (zrtpv_value& value : values) zrtpv_clear(&value);
    }
  };
  Arguments Some() {
    Arguments some{{}, data_.ConsumeIntegralInRange<std::size_t>(0, 4), nullptr};
    for (std::size_t i = 0; i < some.count; ++i) some.values[i] = Value();
    return some;
  }

  // A result overwrites what is there without releasing it.
  zrtpv_value* Result() {
    zrtpv_value* slot = AnySlot();
    if (slot != nullptr) zrtpv_clear(slot);
    return slot;
  }

  void Step() {
    switch (data_.ConsumeIntegralInRange(0, 14)) {
      case 0: return Check(zrtpv_get(Till(), Member(), Result()));
      case 1: {
        const zrtpv_value value = Value();
        return Check(zrtpv_put(Till(), Member(), data_.ConsumeBool() ? &value : nullptr));
      }
      case 2: return Call();
      case 3: return Invoke();
      case 4: return Check(zrtpv_object_get(Object(), ObjectMember(), Result()));
      case 5: {
        const zrtpv_value value = Value();
        return Check(zrtpv_object_put(Object(), ObjectMember(), &value));
      }
      case 6: return ObjectCall();
      case 7: return Check(zrtpv_clear(AnySlot()));
      case 8: return Retain();
      case 9: return Renew();
      case 10: return Open();
      case 11: return Check(zrtpv_play(Till(), Text(), Result()));
      case 12: return OpenHost();
      case 13: return SetText();
      default: {
        std::uint32_t id = 0;
        return Check(zrtpv_id(Member(), &id));
      }
    }
  }

  void Call() {
    Arguments some = Some();
    Check(zrtpv_call(Till(), Member(), some.values.data(), some.count, Result()));
  }
  void Invoke() {
    const zrtpv_member* members = nullptr;
    const std::size_t count = zrtpv_members(&members);
    const std::uint32_t id = data_.ConsumeBool() ? data_.ConsumeIntegral<std::uint32_t>()
                                                 : members[data_.ConsumeIntegral<std::uint8_t>() % count].id;
    Arguments some = Some();
    Check(zrtpv_invoke(Till(), id, data_.ConsumeIntegralInRange(-1, 4), some.values.data(),
                       some.count, Result()));
  }
  void ObjectCall() {
    Arguments some = Some();
    Check(zrtpv_object_call(Object(), ObjectMember(), some.values.data(), some.count, Result()));
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
    till_ = TheShop().Create(data_.ConsumeBool() ? &components : nullptr);
  }
  void Open() {
    const std::string path = data_.ConsumeIntegralInRange(0, 3) == 0 ? "" : TheShop().path();
    Check(zrtpv_open_file(Till(), path.c_str(), ZRTPV_MUST_EXIST, data_.ConsumeIntegral<int>()));
  }
  void SetText() {
    zrtpv_value& slot = Slot();
    zrtpv_clear(&slot);
    const char* text = Text();
    const std::size_t length = text == nullptr ? 1 : std::char_traits<char>::length(text);
    Check(zrtpv_set_text(&slot, text, length));
  }

  // --- Callbacks: some fail, some call back, none tells the truth ---

  static Host& Of(void* host) { return *static_cast<Host*>(host); }

  std::int32_t Status() {
    const int status = data_.ConsumeIntegralInRange(-1, 40);
    if (status < 0 || status > ZRTPV_E_OTHER) return ZRTPV_OK;
    zrtpv_fail(Text());
    return status;
  }
  std::int32_t Answer(zrtpv_value* result) {
    if (depth_ < 2 && data_.remaining_bytes() > 0 && data_.ConsumeIntegralInRange(0, 7) == 0) {
      ++depth_;
      Step();
      --depth_;
    }
    if (data_.ConsumeBool()) *result = Value();
    return Status();
  }

  zrtpv_components Components() {
    zrtpv_components table{};
    table.size = sizeof table;
    table.host = this;
    table.create = [](void* host, const char*, void** component) {
      if (Of(host).data_.ConsumeBool()) *component = host;
      return Of(host).Status();
    };
    table.get = [](void* host, void*, const char*, zrtpv_value* result) {
      return Of(host).Answer(result);
    };
    table.put = [](void* host, void*, const char*, const zrtpv_value*) { return Of(host).Status(); };
    table.call = [](void* host, void*, const char*, zrtpv_value* arguments, std::size_t count,
                    zrtpv_value* result) {
      if (count > 0) Of(host).Answer(&arguments[0]);
      return Of(host).Answer(result);
    };
    table.release = [](void*, void*) {};
    return table;
  }

  void OpenHost() {
    zrtpv_database table{};
    table.size = data_.ConsumeBool() ? std::uint32_t{sizeof table} : data_.ConsumeIntegral<std::uint32_t>();
    table.host = this;
    table.execute = [](void* host, const char*, void** rows) {
      if (Of(host).data_.ConsumeBool()) *rows = host;
      return Of(host).Status();
    };
    table.columns = [](void* host, void*, std::size_t* count) {
      *count = Of(host).data_.ConsumeIntegralInRange<std::size_t>(0, 20);
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
    table.field = [](void* host, void*, std::size_t, zrtpv_value* value) {
      return Of(host).Answer(value);
    };
    table.close = [](void*, void*) {};
    table.begin = table.commit = table.rollback = [](void* host) { return Of(host).Status(); };
    if (data_.ConsumeBool()) {
      table.parameter = [](void* host, const char*, zrtpv_value* value) {
        return Of(host).Answer(value);
      };
    }
    Check(zrtpv_open_host(Till(), &table));
  }

  FuzzedDataProvider data_;
  zrtpv_till* till_ = nullptr;
  zrtpv_till* stale_till_ = nullptr;
  zrtpv_object* last_object_ = nullptr;
  std::array<zrtpv_value, kValues> values_{};
  std::deque<std::string> texts_;
  int depth_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TheShop().PutBack();
  Host(data, size).Run();
  return 0;
}
