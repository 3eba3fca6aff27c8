#include "platform/asked_once.h"

#include <utility>

#include "base/text.h"

namespace tpv {

namespace {

constexpr std::size_t kMostRows = 64;  // what is behind them is read as it comes

}  // namespace

class AskedOnce::Repeated : public Recordset {
 public:
  // `rest` holds the rows behind the answer's; null when there are none.
  explicit Repeated(std::shared_ptr<const Answer> answer, std::unique_ptr<Recordset> rest = nullptr)
      : answer_(std::move(answer)), rest_(std::move(rest)) {}

  bool Bof() const override { return answer_->rows.empty(); }
  bool Eof() const override { return !IsKept() && (rest_ == nullptr || rest_->Eof()); }
  long RecordCount() const override {
    return rest_ != nullptr ? rest_->RecordCount() : static_cast<long>(answer_->rows.size());
  }
  std::size_t FieldCount() const override { return answer_->names.size(); }
  const std::string& FieldName(std::size_t index) const override {
    if (index >= FieldCount()) throw DatabaseError("No existe el campo " + std::to_string(index));
    return answer_->names[index];
  }
  Variant Field(std::size_t index) const override {
    const std::string& name = FieldName(index);
    if (Eof()) throw DatabaseError("No hay fila actual para leer «" + name + "»");
    return IsKept() ? answer_->rows[at_][index] : rest_->Field(index);
  }
  Variant Field(std::string_view name) const override { return Field(IndexOf(name)); }
  void MoveNext() override {
    if (IsKept()) {
      ++at_;
    } else if (rest_ != nullptr) {
      rest_->MoveNext();
    }
  }
  void Close() override {
    at_ = answer_->rows.size();
    if (rest_ != nullptr) rest_->Close();
  }

 private:
  bool IsKept() const { return at_ < answer_->rows.size(); }

  std::shared_ptr<const Answer> answer_;
  std::unique_ptr<Recordset> rest_;
  std::size_t at_ = 0;
};

std::unique_ptr<Recordset> AskedOnce::Execute(std::string_view sql) {
  const bool reads = StartsWithNoCase(Trim(sql), "SELECT");
  if (!reads) answers_.clear();
  if (!reads || !Remembers()) return inner_->Execute(sql);
  const auto known = answers_.find(sql);
  if (known != answers_.end()) return std::make_unique<Repeated>(known->second);
  auto rows = inner_->Execute(sql);
  const auto answer = std::make_shared<Answer>();
  for (std::size_t i = 0; i < rows->FieldCount(); ++i) answer->names.push_back(rows->FieldName(i));
  for (; !rows->Eof() && answer->rows.size() < kMostRows; rows->MoveNext()) answer->rows.push_back(rows->Fields());
  if (!rows->Eof()) return std::make_unique<Repeated>(answer, std::move(rows));
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
