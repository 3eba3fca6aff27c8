#include "office/articles/label_screen.h"

#include <iterator>

#include "base/mask.h"
#include "base/number_text.h"
#include "data/retired.h"
#include "office/articles/bars.h"
#include "office/forms/counted.h"
#include "platform/database.h"
#include "platform/printer.h"
#include "suite/article_search.h"

namespace tpv::office {

namespace {

constexpr std::size_t kShownAtOnce = 200;
constexpr int kMostCopies = 200;
constexpr std::size_t kMostLabels = 20'000;
enum Column : std::size_t { kId, kCode, kName, kBarCode, kPrice };

struct Paper {
  const char* caption;
  LabelSheet sheet;
};

constexpr Paper kPapers[] = {
    {"24 por hoja (70 x 37 mm)", {3, 8, 70, 37.125, 0, 0, 0, 0}},
    {"21 por hoja (63,5 x 38,1 mm)", {3, 7, 63.5, 38.1, 7.25, 15.15, 2.5, 0}},
    {"40 por hoja (52,5 x 29,7 mm)", {4, 10, 52.5, 29.7, 0, 0, 0, 0}},
    {"14 por hoja (99,1 x 38,1 mm)", {2, 7, 99.1, 38.1, 4.65, 15.15, 2.5, 0}},
};

ui::Entries PaperEntries() {
  std::vector<std::string> entries;
  for (const Paper& paper : kPapers) entries.emplace_back(paper.caption);
  return ui::Entries(std::move(entries));
}

}  // namespace

LabelScreen::LabelScreen(Context& context, const Tools& tools) : Screen(context, "frmEtiquetas"), tools_(tools) {
  caption = "Etiquetas";
  Text1.Add(kSearch, "Buscar").columns = 30;
  Text1[kSearch].stretch = true;
  for (const auto& [index, text] : {std::pair{kCopies, "Copias de cada una"}, {kFirst, "Primera etiqueta libre"}}) {
    ui::TextBox& box = Text1.Add(index, text);
    box.columns = box.max_length = 4;
    box.input = ui::Input::Number;
    box.align = ui::Align::Right;
    box.text = "1";
  }
  cboHoja.columns = 28;
  cboHoja.Offer(PaperEntries());
  Frame1.Rows({{&Text1[kSearch], &cmdTodos, &cmdNinguno}, {&cboHoja, &Text1[kCopies], &Text1[kFirst]}});
  using enum ui::Align;
  lstArticulos.layout = {{"Código", "", 1600, Left},
                         {"Artículo", "", 5000, Left},
                         {"Código de barras", "", 2000, Left},
                         {"Precio con IVA", "#,##0.00", 1500, Right}};
  lstArticulos.check_boxes = true;
  lstArticulos.checked = [this](int row) { Tick(row); };
  articles_.shown_columns = {kCode, kName, kBarCode, kPrice};
  articles_.masks = {"", "", "", "#,##0.00"};
  cmdHacer.emphasis = ui::Emphasis::Strong;
  cmdTodos.click = [this] { TickAll(true); };
  cmdNinguno.click = [this] { TickAll(false); };
  cmdHacer.click = [this] { Make(); };
  cmdCerrar.click = [this] { Close(); };
  rows = {{&Frame1}, {&lstArticulos}, {&lblCuenta}, {&cmdHacer, &cmdCerrar}};
}

void LabelScreen::OnLoad() {
  Screen::OnLoad();
  suite::ArticleReader reader(*context().MyBd, RetiredOf(Database(), "ART"));
  while (reader.ReadOn(articles_.rows)) {
  }
  found_ = std::make_unique<ui::SearchList>(articles_);
  Fill();
}

void LabelScreen::OnKeyUp(ui::Key key) {
  Screen::OnKeyUp(key);
  Narrow();
}

void LabelScreen::Narrow() {
  if (Text1[kSearch].text == narrowed_by_) return;
  narrowed_by_ = Text1[kSearch].text;
  found_->Narrow(narrowed_by_);
  Fill();
}

void LabelScreen::Fill() {
  lstArticulos.items.clear();
  for (const std::size_t row : found_->Visible()) {
    if (lstArticulos.items.size() == kShownAtOnce) break;
    ui::ListItem item;
    item.tag = articles_.rows[row][kId].ToInt32();
    item.checked = ticked_.contains(item.tag);
    for (std::size_t column = 0; column < articles_.shown_columns.size(); ++column) {
      item.cells.push_back(found_->Cell(row, column));
    }
    lstArticulos.items.push_back(std::move(item));
  }
  lstArticulos.current_row = lstArticulos.items.empty() ? -1 : 0;
  Count();
}

void LabelScreen::Tick(int row) {
  const ui::ListItem& item = lstArticulos.items.at(static_cast<std::size_t>(row));
  if (item.checked) {
    ticked_.insert(item.tag);
  } else {
    ticked_.erase(item.tag);
  }
  Count();
}

// All that was searched, also what the list has no room for; or none at all.
void LabelScreen::TickAll(bool on) {
  if (!on) ticked_.clear();
  for (const std::size_t row : on ? found_->Visible() : std::vector<std::uint32_t>()) {
    ticked_.insert(articles_.rows[row][kId].ToInt32());
  }
  Fill();
}

void LabelScreen::Count() {
  lblCuenta.caption = found_->CountText() + "; marcados " + std::to_string(ticked_.size());
  cmdHacer.enabled = !ticked_.empty();
}

bool LabelScreen::CheckFields() {
  const LabelSheet& sheet = kPapers[cboHoja.index].sheet;
  const auto within = [this](Field field, int most) {
    const auto number = ParseInt32(Text1[field].text);
    if (number && *number >= 1 && *number <= most) return true;
    Refuse(Text1[field].caption + ": se admite de 1 a " + std::to_string(most), &Text1[field], ui::Icon::Exclamation,
           "Atención");
    return false;
  };
  if (!within(kCopies, kMostCopies) || !within(kFirst, sheet.columns * sheet.rows)) return false;
  if (ticked_.size() * static_cast<std::size_t>(Int32OrZero(Text1[kCopies].text)) <= kMostLabels) return true;
  Refuse("Son demasiadas etiquetas: se admiten " + std::to_string(kMostLabels) + " de una vez", nullptr,
         ui::Icon::Exclamation, "Atención");
  return false;
}

// The scanner reads the bar code; an article without one has its code.
std::vector<Label> LabelScreen::Labels() const {
  std::vector<Label> labels;
  const auto copies = static_cast<std::size_t>(Int32OrZero(Text1[kCopies].text));
  for (std::size_t row = 0; row < articles_.rows.size(); ++row) {
    const ui::PackedRow article = articles_.rows[row];
    if (!ticked_.contains(article[kId].ToInt32())) continue;
    const std::string bar_code = article[kBarCode].TextOr("");
    const std::string code = bar_code.empty() ? article[kCode].TextOr("") : bar_code;
    const std::string price = FormatNumber(article[kPrice].NumberOr(0), "#,##0.00 €");
    labels.insert(labels.end(), copies, {article[kName].TextOr(""), price, code, BarsOf(code)});
  }
  return labels;
}

void LabelScreen::Make() {
  if (!CheckFields()) return;
  LabelSheet sheet = kPapers[cboHoja.index].sheet;
  sheet.used = Int32OrZero(Text1[kFirst].text) - 1;
  try {
    if (tools_.labels == nullptr) throw PrintError("En este equipo no se pueden hacer documentos PDF");
    const std::vector<Label> labels = Labels();
    const std::string path = tools_.labels->Show(labels, sheet, "Etiquetas");
    Message("Hecho: " + Counted(labels.size(), "etiqueta", "etiquetas") + ". Está en " + path, ui::Icon::Information);
  } catch (const PrintError& error) {
    Refuse("No se han hecho las etiquetas. " + std::string(error.what()), nullptr, ui::Icon::Critical);
  }
}

}  // namespace tpv::office
