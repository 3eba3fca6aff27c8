#include "adapters/sqlite/reference_rows.h"

#include <atomic>

#include "adapters/sqlite/translated_recordset.h"

namespace tpv::sqlite {

namespace {

class KeptRecordset : public TranslatedRecordset {
 public:
  KeptRecordset(std::shared_ptr<CachedShape> shape, std::shared_ptr<const VersionedRows> rows)
      : TranslatedRecordset(std::move(shape)), rows_(std::move(rows)) {}

  bool Bof() const override { return rows_->rows.empty(); }
  bool Eof() const override { return at_ >= rows_->rows.size(); }
  long RecordCount() const override { return static_cast<long>(rows_->rows.size()); }
  std::int64_t RowsIdentity() const override { return rows_->identity; }
  void MoveNext() override { at_ += Eof() ? 0 : 1; }
  void Close() override { at_ = rows_->rows.size(); }

 private:
  Variant Value(std::size_t index) const override { return rows_->rows[at_][index]; }

  std::shared_ptr<const VersionedRows> rows_;
  std::size_t at_ = 0;
};

}  // namespace

ReferenceRows::ReferenceRows(sqlite3* handle) : changes_(handle) {}

void ReferenceRows::Written(const schema::Table& table) {
  if (!table.reference) return;
  changes_.WriteHere();
  ++version_;
}

// Another one with every change, ours or somebody else's. Asking begins a snapshot that
// has read nothing yet, so the answer is always of that state.
std::int64_t ReferenceRows::Version() {
  if (known_) return *known_;
  if (changes_.Happened()) ++version_;
  if (in_snapshot_) known_ = version_;
  return version_;
}

std::shared_ptr<const VersionedRows> ReferenceRows::Find(const CachedShape& shape) {
  const bool fresh = shape.kept && shape.kept->version == Version();
  return fresh ? shape.kept : nullptr;
}

// The version comes first: rows newer than it are only read once more. Rows that
// nobody has changed stay the same rows, whatever else was written.
void ReferenceRows::Keep(CachedShape& shape, Recordset& rows) {
  static std::atomic<std::int64_t> identities = 0;
  auto kept = std::make_shared<VersionedRows>();
  kept->version = Version();
  for (; !rows.Eof(); rows.MoveNext()) kept->rows.push_back(rows.Fields());
  const bool unchanged = shape.kept && shape.kept->rows == kept->rows;
  kept->identity = unchanged ? shape.kept->identity : ++identities;
  shape.kept = std::move(kept);
}

void ReferenceRows::SetSnapshot(bool in_snapshot) {
  in_snapshot_ = in_snapshot;
  known_.reset();
}

std::unique_ptr<Recordset> Kept(std::shared_ptr<CachedShape> shape,
                                std::shared_ptr<const VersionedRows> rows) {
  return std::make_unique<KeptRecordset>(std::move(shape), std::move(rows));
}

}  // namespace tpv::sqlite
