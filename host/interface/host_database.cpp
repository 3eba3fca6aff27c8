#include "host/interface/host_database.h"

#include <vector>

#include "base/text.h"
#include "host/interface/structs.h"
#include "host/interface/values.h"

namespace tpv::interface {

namespace {

// Throws what the callback's status means.
void Require(std::int32_t status) {
  if (status == ZRTPV_OK) return;
  const std::string reason = TakeCallbackText();
  const DatabaseError error(reason.empty() ? "La conexión del programa falló" : reason);
  if (status == ZRTPV_E_COMMIT_UNKNOWN) throw CommitUnknown(error);
  throw error;
}

const zrtpv_database& Complete(const zrtpv_database& functions) {
  const bool complete =
      functions.execute != nullptr && functions.columns != nullptr && functions.column != nullptr &&
      functions.next != nullptr && functions.field != nullptr && functions.close != nullptr &&
      functions.begin != nullptr && functions.commit != nullptr && functions.rollback != nullptr;
  if (!complete) throw Fault(ZRTPV_E_ARGUMENT, "Falta una función de la conexión");
  return functions;
}

// One value that a callback fills.
template <typename Callback>
Variant ValueOf(const std::shared_ptr<Surroundings>& around, Callback callback) {
  const Variant nothing;
  Lent value({&nothing, 1}, around);
  Require(callback(value.data()));
  try {
    return value[0];
  } catch (const Fault& fault) {
    throw DatabaseError(std::string("La conexión del programa dio un valor incorrecto: ") +
                        fault.what());
  }
}

// All rows of one statement, taken over before the next is sent.
class HostRecordset : public Recordset {
 public:
  std::vector<std::string> names;
  std::vector<std::vector<Variant>> rows;

  bool Bof() const override { return rows.empty(); }
  bool Eof() const override { return closed_ || at_ >= rows.size(); }
  long RecordCount() const override { return static_cast<long>(rows.size()); }
  std::size_t FieldCount() const override { return names.size(); }
  const std::string& FieldName(std::size_t index) const override {
    if (index < names.size()) return names[index];
    throw DatabaseError("El resultado no tiene el campo " + std::to_string(index));
  }
  Variant Field(std::size_t index) const override {
    FieldName(index);
    if (Eof()) throw DatabaseError("No hay ninguna fila que leer");
    return rows[at_][index];
  }
  Variant Field(std::string_view name) const override { return Field(IndexOf(name)); }
  void MoveNext() override {
    if (!Eof()) ++at_;
  }
  void Close() override { closed_ = true; }

 private:
  std::size_t at_ = 0;
  bool closed_ = false;
};

// The host's rows while they are read.
class Reader {
 public:
  Reader(const zrtpv_database& functions, void* rows, const std::shared_ptr<Surroundings>& around)
      : functions_(functions), rows_(rows), around_(around) {}
  ~Reader() { functions_.close(functions_.host, rows_); }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  void ReadInto(HostRecordset& result) {
    ReadNames(result.names);
    while (Next()) {
      auto& row = result.rows.emplace_back();
      for (std::size_t i = 0; i < result.names.size(); ++i) row.push_back(Field(i));
    }
  }

 private:
  void ReadNames(std::vector<std::string>& names) {
    std::size_t count = 0;
    Require(functions_.columns(functions_.host, rows_, &count));
    for (std::size_t i = 0; i < count; ++i) {
      const char* name = nullptr;
      Require(functions_.column(functions_.host, rows_, i, &name));
      names.push_back(ValidUtf8(name == nullptr ? "" : name));
    }
  }
  bool Next() {
    std::int32_t found = 0;
    Require(functions_.next(functions_.host, rows_, &found));
    return found != 0;
  }
  Variant Field(std::size_t index) {
    return ValueOf(around_, [&](zrtpv_value* value) {
      return functions_.field(functions_.host, rows_, index, value);
    });
  }

  const zrtpv_database& functions_;
  void* rows_;
  const std::shared_ptr<Surroundings>& around_;
};

}  // namespace

HostConnection::HostConnection(const zrtpv_database& functions, std::shared_ptr<Surroundings> around)
    : functions_(Complete(functions)), around_(std::move(around)) {}

HostConnection::~HostConnection() {
  if (functions_.release != nullptr) functions_.release(functions_.host);
}

std::unique_ptr<Recordset> HostConnection::Execute(std::string_view sql) {
  TakeCallbackText();
  void* rows = nullptr;
  Require(functions_.execute(functions_.host, std::string(sql).c_str(), &rows));
  auto result = std::make_unique<HostRecordset>();
  if (rows != nullptr) Reader(functions_, rows, around_).ReadInto(*result);
  return result;
}

void HostConnection::BeginTrans() {
  if (in_transaction_) throw DatabaseError("Ya hay una transacción abierta");
  TakeCallbackText();
  Require(functions_.begin(functions_.host));
  in_transaction_ = true;
}

void HostConnection::CommitTrans() {
  TakeCallbackText();
  Require(functions_.commit(functions_.host));
  in_transaction_ = false;
}

void HostConnection::RollbackTrans() {
  in_transaction_ = false;
  TakeCallbackText();
  Require(functions_.rollback(functions_.host));
}

Variant HostConnection::Parameter(std::string_view name) {
  TakeCallbackText();
  return ValueOf(around_, [&](zrtpv_value* value) {
    return functions_.parameter(functions_.host, std::string(name).c_str(), value);
  });
}

}  // namespace tpv::interface
