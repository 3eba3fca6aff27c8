// The form of one record of a table, new or changed: its fields lie in the columns that
// they name, what else it has is the screen's own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "office/forms/field_form.h"

namespace tpv {
class Recordset;
}

namespace tpv::office {

struct RecordTable {
  const char* table;    // as statements name it: "ART", "zrcomun.dbo.tivas"
  const char* id;       // the column that the store numbers; null for a table of one row
  const char* subject;  // what stands in the window's title: "Artículo"
  std::span<const FormField> fields;  // those without a column of the table are the screen's own
};

class RecordForm : public FieldForm {
 public:
  // Id 0 is a new record. The table outlives the form.
  RecordForm(Context& context, std::string form_name, const RecordTable& table, std::int32_t id);

  // 0 while a new one is not stored.
  std::int32_t Id() const { return id_; }
  bool IsNew() const { return id_ == 0 && table_.id != nullptr; }

 protected:
  // Reads the record, or proposes values for a new one.
  void Fill() override;
  virtual void FillNew() {}
  // One transaction: nobody else has changed the record since it was shown, no unique
  // value is another's, the changed columns are written, then what is the screen's own.
  void Store() override;
  virtual void StoreOwn() {}
  // Numbers for columns of the record that no field shows, asked within the transaction
  // of a new record and of a changed one. Throws FieldFault.
  virtual std::vector<std::pair<std::string, std::int32_t>> Own() const { return {}; }

 private:
  bool InTable(const FormField& field) const;
  std::string Select() const;
  std::string Where() const;
  std::vector<std::string> Read();
  void RequireUnchanged();
  void RequireUnique();
  std::string Literal(const FormField& field) const;
  void Insert();
  void Update();

  const RecordTable& table_;
  std::int32_t id_;
  std::vector<std::string> read_;  // what the columns held when the record was shown
};

}  // namespace tpv::office
