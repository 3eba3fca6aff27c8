#include "platform/asked_once.h"

#include <utility>

#include "base/text.h"

namespace tpv {

namespace {

constexpr long kMostRows = 64;  // longer lists are read as they come

}  // namespace

class AskedOnce::Repeated : public Recordset {
 public:
  explicit Repeated(std::shared_ptr<const Answer> answer) : answer_(std::move(answer)) {}

  bool Bof() const override { return answer_->rows.empty(); }
  bool Eof() const override { return at_ >= answer_->rows.size(); }
  long RecordCount() const override { return static_cast<long>(answer_->rows.size()); }
  std::size_t FieldCount() const override { return answer_->names.size(); }
  const std::string& FieldName(std::size_t index) const override {
    if (index >= FieldCount()) throw DatabaseError("No existe el campo " + std::to_string(index));
    return answer_->names[index];
  }
  Variant Field(std::size_t index) const override {
    const std::string& name = FieldName(index);
    if (Eof()) throw DatabaseError("No hay fila actual para leer «" + name + "»");
    return answer_->rows[at_][index];
  }
  Variant Field(std::string_view name) const override { return Field(IndexOf(name)); }
  void MoveNext() override { at_ += Eof() ? 0 : 1; }
  void Close() override { at_ = answer_->rows.size(); }

 private:
  std::shared_ptr<const Answer> answer_;
  std::size_t at_ = 0;
};

std::unique_ptr<Recordset> AskedOnce::Execute(std::string_view sql) {
  const bool reads = StartsWithNoCase(Trim(sql), "SELECT");
  if (!reads) answers_.clear();
  if (!reads || !Remembers()) return inner_->Execute(sql);
  const auto known = answers_.find(sql);
  if (known != answers_.end()) return std::make_unique<Repeated>(known->second);
  auto rows = inner_->Execute(sql);
  if (rows->RecordCount() < 0 || rows->RecordCount() > kMostRows) return rows;
  const auto answer = std::make_shared<Answer>();
  for (std::size_t i = 0; i < rows->FieldCount(); ++i) answer->names.push_back(rows->FieldName(i));
  for (; !rows->Eof(); rows->MoveNext()) answer->rows.push_back(rows->Fields());
  answers_.emplace(sql, answer);
  return std::make_unique<Repeated>(answer);
}

// What a transaction relies on is asked in it, and what is read afterwards is new.
void AskedOnce::BeginTrans() {
  answers_.clear();
  inner_->BeginTrans();
}

// What was read under the lock since the last write is as it was stored.
void AskedOnce::CommitTrans() {
  auto read = std::exchange(answers_, {});
  inner_->CommitTrans();
  if (snapshots_ > 0) answers_ = std::move(read);
}

void AskedOnce::RollbackTrans() {
  answers_.clear();
  inner_->RollbackTrans();
}

void AskedOnce::BeginSnapshot() {
  ++snapshots_;
  inner_->BeginSnapshot();
}

void AskedOnce::EndSnapshot() noexcept {
  --snapshots_;
  if (!Remembers()) answers_.clear();
  inner_->EndSnapshot();
}

}  // namespace tpv
