#include "office/articles/quick_key_list.h"

#include "base/text.h"
#include "context/context.h"
#include "data/retired.h"
#include "data/sql_text.h"
#include "platform/database.h"
#include "sale/article_lookup.h"
#include "sale/quick_keys.h"

namespace tpv::office {

namespace {

constexpr const char* kPage = "tec_pagina";
constexpr const char* kText = "tec_texto";
constexpr const char* kCode = "codigo";

constexpr FormField kFields[] = {
    {.column = kPage, .caption = "Página", .asks = Asks::Text, .width = kKeyText,
     .help = "Las teclas de una página se ven juntas: «Fruta», «Pan». Con una sola página, su nombre no se ve.",
     .required = true},
    {.column = "tec_orden", .caption = "Orden", .asks = Asks::Whole, .width = 3,
     .help = "El lugar en su página: las de número menor, primero.", .required = true, .most = 999, .beside = true},
    {.column = kCode, .caption = "Código del artículo (F1)", .asks = Asks::Text, .width = 20,
     .help = "El artículo que se vende al pulsarla. F1 lo busca por su nombre.", .required = true, .beside = true},
    {.column = kText, .caption = "Texto", .asks = Asks::Text, .width = kKeyText,
     .help = "Lo que se lee en la tecla, en pocas letras.", .required = true, .beside = true},
};

constexpr RecordTable kKey{"Teclas", "tec_id", "Tecla rápida", kFields};

class QuickKeyForm : public RecordForm {
 public:
  QuickKeyForm(Context& context, std::int32_t id) : RecordForm(context, "frmTecla", kKey, id) {
    ControlOf(kCode).tag = "Articulos";
    ControlOf(kCode).left = [this] { ProposeText(); };
  }

 protected:
  void Fill() override {
    RecordForm::Fill();
    if (IsNew()) return;
    ShowCode("SELECT TOP 1 ART_Cod FROM ART INNER JOIN Teclas ON tec_idart = art_id WHERE tec_id = " +
             sql::Number(std::int64_t{Id()}));
  }

  void FillNew() override {
    const auto last = Database().Execute("SELECT TOP 1 tec_pagina, tec_orden FROM Teclas ORDER BY tec_id DESC");
    const bool first = last->Eof();
    Show(kPage, first ? Variant("General") : last->Field(0));
    Show("tec_orden", Variant(first ? 1 : last->Field(1).IntOr(0) + 1));
  }

  void OnF1(std::string_view tag) override {
    if (tag != "Articulos") return RecordForm::OnF1(tag);
    const std::int32_t id = SearchArticle(context());
    if (id == 0) return;
    ShowCode("SELECT TOP 1 ART_Cod FROM ART WHERE art_id = " + sql::Number(std::int64_t{id}));
    ProposeText();
  }

  void Check() override {
    for (const char* column : {kPage, kText}) {
      if (Plain(column).find('&') != std::string::npos) throw FieldFault(column, "no puede llevar el signo &");
    }
  }

  std::vector<std::pair<std::string, std::int32_t>> Own() const override { return {{"tec_idart", Article()}}; }

  void StoreOwn() override { RequireRoom(); }

 private:
  void ShowCode(const std::string& statement) {
    const auto row = Database().Execute(statement);
    Show(kCode, row->Eof() ? Variant() : row->Field(0));
  }

  void ProposeText() {
    if (!Plain(kText).empty() || Plain(kCode).empty()) return;
    const auto row =
        Database().Execute("SELECT TOP 1 art_des FROM ART WHERE ART_Cod = " + sql::Quoted(Plain(kCode)));
    if (!row->Eof()) Show(kText, Variant(Trim(Left(row->Field(0).TextOr(""), kKeyText))));
  }

  std::int32_t Article() const {
    const auto row =
        Database().Execute("SELECT TOP 1 art_id FROM ART WHERE ART_Cod = " + sql::Quoted(Plain(kCode)));
    if (row->Eof()) throw FieldFault(kCode, "no hay ningún artículo con ese código");
    if (IsRetired(Database(), "ART", row->Field(0).ToInt32())) throw FieldFault(kCode, "ese artículo está retirado");
    return row->Field(0).ToInt32();
  }

  // The key is stored by now: what there is counts it.
  void RequireRoom() {
    const auto keys =
        Database().Execute("SELECT COUNT(*) FROM Teclas WHERE tec_pagina = " + sql::Quoted(Plain(kPage)));
    if (keys->Field(0).ToInt32() > static_cast<std::int32_t>(kKeysOfPage)) {
      throw FieldFault(kPage, "ya tiene " + std::to_string(kKeysOfPage) + " teclas: ponga otra página");
    }
    const auto pages = Database().Execute("SELECT COUNT(DISTINCT tec_pagina) FROM Teclas");
    if (pages->Field(0).ToInt32() > static_cast<std::int32_t>(kKeyPages)) {
      throw FieldFault(kPage, "ya hay " + std::to_string(kKeyPages) + " páginas: elija una de ellas");
    }
  }
};

}  // namespace

QuickKeyList::QuickKeyList(Context& context)
    : RecordList(context, {"frmTeclas",
                           "Teclas rápidas",
                           {{"Página", 2000}, {"Texto", 2500}, {"Orden", 900}, {"Código", 1800}, {"Artículo", 4500}}}) {
  cmdQuitar.click = [this] { Remove(); };
  AddButtons({&cmdQuitar});
}

std::string QuickKeyList::Statement() const {
  return "SELECT tec_id, tec_pagina, tec_texto, tec_orden, ART_Cod, art_des FROM Teclas "
         "LEFT JOIN ART ON art_id = tec_idart ORDER BY tec_pagina, tec_orden, tec_id";
}

std::unique_ptr<RecordForm> QuickKeyList::FormOf(std::int32_t id) {
  return std::make_unique<QuickKeyForm>(context(), id);
}

// A key is named by nothing else: it goes.
void QuickKeyList::Remove() {
  const std::int32_t id = Marked();
  if (id == 0) return;
  const std::string question = "¿Desea quitar la tecla «" + MarkedText(1) + "»? El artículo queda como está.";
  if (!Confirm(question, ui::Icon::Question, ui::Answer::No)) return;
  try {
    Database().Execute("DELETE FROM Teclas WHERE tec_id = " + sql::Number(std::int64_t{id}));
  } catch (const DatabaseError& error) {
    return Refuse("No se ha podido grabar." + std::string(kLineBreak) + error.what(), nullptr, ui::Icon::Critical);
  }
  Read();
}

}  // namespace tpv::office
