#include "screen/searched_form.h"

namespace tpv::ui {

SearchedForm::SearchedForm(const SearchList& list, Form* over) : Form("frmBusqueda"), list_(list), over_(over) {
  const SearchRequest& request = list.request();
  caption = request.title.empty() ? "Buscar" : request.title;
  for (std::size_t i = 0; i < request.shown_columns.size(); ++i) {
    GridColumn& column = found.layout.emplace_back();
    if (i < request.captions.size()) column.caption = request.captions[i];
    if (i < request.widths.size()) column.width = request.widths[i];
    if (!request.IsFigure(i)) continue;
    column.mask = request.masks[i];
    column.align = Align::Right;
  }
  found.filter = list.words();
  if (list.sorted_by()) found.sorted_by = static_cast<int>(*list.sorted_by());
  found.descending = list.descending();
}

void SearchedForm::Fill() {
  const SearchRequest& request = list_.request();
  found.rows.clear();
  for (const std::size_t row : list_.Visible()) {
    const PackedRow values = request.rows[row];
    std::vector<Variant> cells;
    for (const std::size_t column : request.shown_columns) cells.push_back(values[column]);
    found.rows.push_back(std::move(cells));
  }
}

}  // namespace tpv::ui
