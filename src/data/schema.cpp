#include "data/schema.h"

#include <algorithm>

#include "base/text.h"

namespace tpv::schema {

namespace {

using enum Type;
constexpr Home kStore = Home::Store;
constexpr Home kCatalogue = Home::Catalogue;

Column Required(std::string_view name, Type type, int length = 0) {
  return {name, type, length, true, Default::None};
}

Column With(std::string_view name, Type type, Default initial, bool required = false) {
  return {name, type, 0, required, initial};
}

Table Cav() {
  return {"Cav", kStore, true, false,
          {{"Cav_Id", Int}, {"Cav_Serie", Text, 5}, {"Cav_Numero", Int},
           With("Cav_Fecha", DateTime, Default::Now), {"Cav_Ref", Text, 50}, {"Cav_Caja", Int},
           {"Cav_Agente", Int}, {"Cav_IdCli", Int}, {"Cav_NFiscal", Text, 50},
           {"Cav_NCom", Text, 50}, {"Cav_CliDoc", Text, 20}, {"Cav_SG", Text, 2},
           {"Cav_NOMBRE", Text, 50}, {"Cav_Num", SmallInt}, {"Cav_ESCALERA", Text, 2},
           {"Cav_Piso", Text, 2}, {"Cav_Puerta", Text, 2}, {"Cav_Cp", Text, 5},
           {"Cav_POBLACION", Text, 50}, {"Cav_Pais", Text, 3}, {"Cav_PROVINCIA", Text, 3},
           {"Cav_SPais", Text, 50}, {"Cav_SProv", Text, 50},
           With("Cav_Ticket", Int, Default::Zero), With("Cav_Situa", Int, Default::One),
           With("Cav_IdFactura", Int, Default::Zero),
           With("Cav_Cobrado", Bit, Default::Zero, true)},
          {{{"Cav_Fecha"}}, {{"Cav_Serie", "Cav_Numero"}}, {{"Cav_Caja", "Cav_Ticket", "Cav_Id"}},
           // Open tickets, a customer's or all, come by date without being sorted.
           {{"Cav_Cobrado", "Cav_Ticket", "Cav_IdCli", "Cav_Fecha"}}, {{"Cav_Cobrado", "Cav_Ticket", "Cav_Fecha"}},
           {{"Cav_IdFactura"}}}};
}

Table Lav() {
  return {"Lav", kStore, true, false,
          {{"Lav_Id", Int}, Required("Lav_IdCav", Int), {"Lav_Idart", Int},
           {"Lav_CodArt", Text, 20}, {"Lav_Des", Text, 100}, {"Lav_Uni", Float},
           {"Lav_precio", Float}, {"Lav_DTo1", Float}, {"Lav_Importe", Float},
           {"Lav_Tiva", Int}},
          // All that a ticket's totals ask of its lines, which keep their order.
          {{{"Lav_IdCav", "Lav_Id", "Lav_Importe", "Lav_Tiva"}}}};
}

Table DiaCaj() {
  return {"DiaCaj", kStore, true, false,
          {{"DiaCaj_Id", Int}, With("DiaCaj_Fecha", DateTime, Default::Now), {"DiaCaj_Caja", Int},
           {"DiaCaj_IdUsu", Int}, {"DiaCaj_IdAge", Int}, {"DiaCaj_IdCliPr", Int},
           {"DiaCaj_Tipo", Int}, {"DiaCaj_Modo", Int}, {"DiaCaj_Entrega", Float},
           {"DiaCaj_Tarjeta", Float}, {"DiaCaj_Devolucion", Float}, {"DiaCaj_Descuento", Float},
           {"DiaCaj_Cobrado", Float}, {"DiaCaj_Obs", Text, 100}, {"DiaCaj_SaldoIni", Money},
           {"DiaCaj_CobMet", Money}, {"DiaCaj_CobTar", Money}, {"DiaCaj_Pagos", Money},
           {"DiaCaj_Ret", Money}, With("DiaCaj_IdCierre", Int, Default::Zero)},
          {{{"DiaCaj_Caja", "DiaCaj_Fecha DESC"}}, {{"DiaCaj_IdCierre"}},
           {{"DiaCaj_Tipo", "DiaCaj_Fecha DESC"}}}};
}

Table Customers() {
  return {"Cli", kStore, true, false,
          {{"CLI_ID", Int}, Required("CLI_COD", Int), {"CLI_NOM", Text, 50},
           {"CLI_APE1", Text, 50}, {"CLI_APE2", Text, 50}, {"CLI_COMER", Text, 50},
           {"CLI_FCO", Int}, {"CLI_DTO1", Float}, {"CLI_DTO2", Float}, {"CLI_OBSER", Text, 255},
           {"CLI_IdAge", Int}, {"cli_doc", Text, 20}, {"Cli_Reg", Int}, {"Cli_Cta", Text, 24},
           {"cli_ban", Int}, {"cli_FavObs", Text, 255}, {"Cli_Di1", SmallInt},
           {"Cli_Di2", SmallInt}, {"Cli_msp", SmallInt}},
          {{{"CLI_COD"}, true}, {{"CLI_COMER"}}}};
}

Table Addresses() {
  return {"Dir", kStore, true, false,
          {{"DIR_ID", Int}, {"DIR_SG", Text, 2}, {"DIR_NOMBRE", Text, 50},
           {"DIR_NUMERO", SmallInt}, {"DIR_LETRA", Text, 2}, {"DIR_BLOQUE", Text, 10},
           {"DIR_ESCALERA", Text, 2}, {"DIR_PISO", Text, 2}, {"DIR_PUERTA", Text, 2},
           {"DIR_CP", Text, 5}, {"DIR_PAIS", Text, 3}, {"DIR_PROVINCIA", Text, 3},
           {"DIR_POBLACION", Text, 50}, {"DIR_COMER", Text, 50}},
          {}};
}

Table Articles() {
  return {"ART", kStore, true, false,
          {{"art_id", Int}, {"ART_Cod", Text, 20}, {"ART_BARCODE", Text, 20},
           {"art_des", Text, 100}, {"art_pve", Float}, {"art_tiva", Int}, {"art_alma", Int},
           {"art_for", Int}, {"art_mat", Int}, {"ART_FAC", Float}, {"art_pvpi", Float}},
          // By description: a search shows its first rows before it has read the others.
          {{{"ART_Cod"}}, {{"ART_BARCODE"}}, {{"art_des"}}}};
}

// A row for each sale being keyed, so that what a dead till left is known.
Table SalesInProgress() {
  return {"VentasEnCurso", kStore, false, true,
          {{"Vec_IdCav", Int}, Required("Vec_Caja", Int), {"Vec_Agente", Int},
           With("Vec_Inicio", DateTime, Default::Now)},
          {}};
}

// Tickets that somebody deleted. Nothing takes a row away.
Table DeletedTickets() {
  return {"Anulados", kStore, true, false,
          {{"Anu_Id", Int}, With("Anu_Cuando", DateTime, Default::Now), Required("Anu_IdCav", Int),
           {"Anu_Ticket", Text, 20}, {"Anu_Fecha", DateTime}, {"Anu_Caja", Int},
           {"Anu_Agente", Int}, {"Anu_Cliente", Text, 50}, {"Anu_Importe", Money},
           {"Anu_Lineas", Text}, {"Anu_PorCaja", Int}, {"Anu_PorUsuario", Int},
           {"Anu_PorAgente", Int}},
          {{{"Anu_Cuando"}}}};
}

// Invoices of tickets; their lines, totals by rate and due dates are Fal, Fai, Vto.
Table Invoices() {
  return {"Fav", kStore, true, false,
          {{"Fav_Id", Int}, {"Fav_Serie", Text, 5}, {"Fav_Numero", Int}, {"Fav_Fecha", DateTime},
           {"Fav_IdCli", Int}, {"Fav_CliCod", Text, 10}, {"Fav_CliNom", Text, 150},
           {"Fav_CliDoc", Text, 20}, {"Fav_IdFco", Int}, {"Fav_Obs", Text, 255},
           {"Fav_Sg", Text, 2}, {"Fav_Nombre", Text, 50}, {"Fav_Num", Text, 10},
           {"Fav_Escalera", Text, 2}, {"Fav_Piso", Text, 2}, {"Fav_Puerta", Text, 2},
           {"Fav_Cp", Text, 5}, {"Fav_Pais", Text, 3}, {"Fav_Poblacion", Text, 50},
           {"Fav_Provincia", Text, 3}, {"Fav_Base", Money}, {"Fav_Impuestos", Money},
           {"Fav_Total", Money}},
          {{{"Fav_Serie", "Fav_Numero"}, true}}};
}

// Invoice records, in the order of making; rows are only added.
Table FiscalRecords() {
  return {"Fiscal", kStore, false, true,
          {{"Fis_Id", Int}, Required("Fis_Modo", Int), Required("Fis_Tipo", Text, 2),
           With("Fis_Subsana", Bit, Default::Zero), {"Fis_Rechazo", Text, 1},
           Required("Fis_Emisor", Text, 20), {"Fis_Nombre", Text, 120},
           Required("Fis_Numero", Text, 60), {"Fis_Fecha", DateTime}, {"Fis_CliNombre", Text, 120},
           {"Fis_CliDoc", Text, 20}, {"Fis_Desglose", Text}, {"Fis_Relacion", Text},
           {"Fis_Cuota", Money}, {"Fis_Total", Money}, Required("Fis_Momento", Text, 25),
           {"Fis_Anterior", Int}, Required("Fis_Texto", Text), Required("Fis_Huella", Text, 64),
           {"Fis_IdCav", Int}, {"Fis_IdFav", Int}, {"Fis_Productor", Text, 120},
           {"Fis_ProdDoc", Text, 20}, {"Fis_Version", Text, 50}, {"Fis_Instalacion", Text, 100}},
          // One for tickets and invoices, which have no ticket: each record enters two indexes.
          {{{"Fis_IdCav", "Fis_IdFav"}}, {{"Fis_Numero"}}}};
}

// What the agency said of each record that it was sent.
Table FiscalReplies() {
  return {"FiscalRespuestas", kStore, true, false,
          {{"Fir_Id", Int}, Required("Fir_IdFis", Int), With("Fir_Momento", DateTime, Default::Now),
           Required("Fir_Estado", Int), {"Fir_Codigo", Int}, {"Fir_Texto", Text, 1500},
           {"Fir_Csv", Text, 50}, With("Fir_Duplicado", Bit, Default::Zero)},
          {{{"Fir_IdFis"}, true}, {{"Fir_Estado"}}}};
}

// Lines as the tickets had them when they were invoiced.
Table InvoicedLines() {
  return {"Fal", kStore, true, false,
          {{"Fal_Id", Int}, Required("Fal_IdFav", Int), {"Fal_IdCav", Int}, {"Fal_Ticket", Text, 20},
           {"Fal_Fecha", DateTime}, {"Fal_CodArt", Text, 20}, {"Fal_Des", Text, 100},
           {"Fal_Uni", Float}, {"Fal_Precio", Float}, {"Fal_Dto1", Float}, {"Fal_Importe", Float},
           {"Fal_Iva", Float}, {"Fal_Total", Money}},
          {{{"Fal_IdFav"}}}};
}

// Which till sends the invoice records to the agency now, and when it may: one row.
Table SendingTurn() {
  return {"FiscalTurno", kStore, false, true,
          {{"Fit_Id", Int}, {"Fit_Caja", Text, 60}, {"Fit_Hasta", DateTime},
           {"Fit_Proximo", DateTime}, {"Fit_Fallos", Int}, {"Fit_Entregado", Int},
           {"Fit_Error", Text, 500}},
          {}};
}

// Years that lie in an archive beside the store; in an archive, the store that it came
// from, with the year negative. The records are those in force whose tickets lie there.
Table Archives() {
  return {"Archivos", kStore, true, false,
          {{"Arv_Id", Int}, Required("Arv_Hasta", Int), Required("Arv_Fichero", Text, 255),
           With("Arv_Cuando", DateTime, Default::Now), {"Arv_Tickets", Int}, {"Arv_Importe", Money},
           {"Arv_Modo", Int}, {"Arv_Registros", Int}, {"Arv_ImpRegistros", Money},
           {"Arv_UltRegistro", Int}},
          {}};
}

// What the entries of a closure that lie elsewhere add up to.
Table ArchivedClosures() {
  return {"ArchivoCierres", kStore, false, true,
          {{"Arc_IdCierre", Int}, {"Arc_IdArchivo", Int}, {"Arc_Apuntes", Int},
           {"Arc_Metalico", Money}, {"Arc_Tarjeta", Money}, {"Arc_Pagos", Money}},
          {}};
}

Table Parameters() {
  return {"Parametros", kStore, false, false,
          {{"Par_NumCaja", Int}, {"Par_CliCon", Int}, {"Par_SerTic", Text, 5},
           {"Par_SerTicFac", Text, 5}, {"Par_Alma", Int}, {"Par_Rapida", Bit},
           {"par_decpre", Int}, {"par_deccan", Int}, {"Par_Impre", Int}, {"Par_PCajon", Int},
           {"Par_SCajon", Text, 100}, {"Par_Nombre", Text, 100}, {"Par_Sg", Text, 5},
           {"Par_NombreVia", Text, 100}, {"Par_Cp", Text, 10}, {"Par_Poblacion", Text, 50},
           {"Par_Telefono", Text, 30}, {"Par_Doc", Text, 20}, {"par_tpvemail", Text, 100},
           {"Par_Fiscal", Int}, {"Par_FisProductor", Text, 120}, {"Par_FisProdDoc", Text, 20},
           {"Par_FisInstalacion", Text, 100}, {"Par_FisZona", Text, 10}, {"Par_FisTicket", Int},
           {"Par_FisFactura", Int}, {"Par_FisRegistro", Int}},
          {},
          true};
}

std::vector<Table> Describe() {
  return {
      Cav(), Lav(), DiaCaj(),
      {"Tco", kStore, false, false,
       {Required("Tco_IdDiaCaj", Int), Required("Tco_IdCav", Int), {"Tco_Importe", Float},
        {"Tco_Obs", Text, 100}},
       {{{"Tco_IdCav"}}, {{"Tco_IdDiaCaj"}}}},
      {"QCIERRES", kStore, true, false,
       {{"QCIERRES_id", Int}, {"QCIERRES_Email", Text, 100}, {"QCIERRES_Asunto", Text, 50},
        {"QCIERRES_Texto", Text}, {"QCIERRES_Enviado", DateTime}, {"QCIERRES_Error", Text, 500}},
       {{{"QCIERRES_Enviado"}}}},
      // Which queued mail some till is sending, and since when.
      {"QCIERRESEnvio", kStore, false, true,
       {{"Qen_Id", Int}, With("Qen_Desde", DateTime, Default::Now)}, {}},
      // What a drawer held at a closure, by notes and coins.
      {"Arqueos", kStore, true, false,
       {{"Arq_Id", Int}, Required("Arq_IdCierre", Int), {"Arq_Esperado", Money},
        {"Arq_Contado", Money}, {"Arq_Diferencia", Money}, {"Arq_Piezas", Text, 250}},
       {{{"Arq_IdCierre"}, true}}},
      Customers(), Addresses(),
      {"CliDir", kStore, false, false,
       {Required("CLIDIR_CLI", Int), Required("CLIDIR_DIR", Int)}, {{{"CLIDIR_CLI"}}}},
      {"BANCOS", kStore, true, false, {{"Ban_Id", Int}, {"Ban_CCC", Text, 24}}, {}},
      {"Fco", kStore, true, false, {{"Fco_Id", Int}, {"Fco_Des", Text, 50}}, {}, true},
      {"Fcol", kStore, false, false, {Required("Fcol_id", Int), {"Fcol_Mod", Int}},
       {{{"Fcol_id"}}}},
      // When the lines of a payment method fall due and for what share of the total.
      {"Plazos", kStore, false, false,
       {Required("plazo_idfco", Int), {"plazo_modo", Int}, {"plazo_dias", Int},
        {"plazo_por", Float}},
       {{{"plazo_idfco"}}}},
      {"Age", kStore, true, false, {{"Age_ID", Int}, {"Age_NOM", Text, 50}, {"Age_Reg", Int}}, {}},
      {"Pro", kStore, true, false, {{"Pro_Id", Int}, {"Pro_Cod", Int}, {"Pro_Nom", Text, 50}}, {}},
      {"alm", kStore, true, false, {{"alm_id", Int}, {"alm_des", Text, 50}}, {}},
      Articles(),
      {"artcli", kStore, false, false,
       {Required("artcli_idart", Int), Required("artcli_idcli", Int), {"artcli_dto1", Float},
        {"artcli_dto2", Float}, {"artcli_fijo", Float}},
       {{{"artcli_idart", "artcli_idcli"}}}},
      {"Exis", kStore, false, false,
       {Required("exis_idart", Int), Required("exis_idalma", Int), {"exis_uni", Float}},
       {{{"exis_idart", "exis_idalma"}}}},
      // What a sold line took from a warehouse, so that it can be given back.
      {"Movi", kStore, false, true,
       {Required("movi_idlav", Int), {"movi_idart", Int}, {"movi_idalma", Int},
        {"movi_uni", Float}},
       {}},
      {"Contadores", kStore, false, false,
       {Required("cont_tipo", Text, 10), Required("cont_serie", Text, 5), {"cont_numero", Int}},
       {{{"cont_tipo", "cont_serie"}, true}}},
      SalesInProgress(), DeletedTickets(), Invoices(),
      // The sale screen's keys for goods without a bar code, in pages by name.
      {"Teclas", kStore, true, false,
       {{"tec_id", Int}, Required("tec_pagina", Text, 20), {"tec_orden", Int}, {"tec_texto", Text, 20},
        Required("tec_idart", Int)},
       {}},
      // Records that are offered no more: the table's name and the record's number.
      {"Bajas", kStore, false, false,
       {Required("baja_tabla", Text, 20), Required("baja_idreg", Int),
        With("baja_fecha", DateTime, Default::Now)},
       {{{"baja_tabla", "baja_idreg"}, true}},
       true},
      InvoicedLines(),
      {"Fai", kStore, false, false,
       {Required("Fai_IdFav", Int), {"Fai_Iva", Float}, {"Fai_Base", Money}, {"Fai_Cuota", Money}},
       {{{"Fai_IdFav"}}}},
      {"Vto", kStore, true, false,
       {{"Vto_Id", Int}, Required("Vto_IdFav", Int), {"Vto_Orden", Int}, {"Vto_Fecha", DateTime},
        {"Vto_Importe", Money}, {"Vto_Modo", Int}, {"Vto_Cobrado", Bit}, {"Vto_Cartera", Bit},
        {"Vto_IdCli", Int}, {"Vto_Cta", Text, 24}, {"Vto_Banco", Text, 24}},
       {{{"Vto_IdFav"}}}},
      Parameters(), FiscalRecords(), FiscalReplies(), SendingTurn(), Archives(), ArchivedClosures(),
      // The numbers of its tickets by series, the first and the last.
      {"ArchivoSeries", kStore, false, false,
       {Required("Ars_IdArchivo", Int), {"Ars_Serie", Text, 5}, {"Ars_Desde", Int}, {"Ars_Hasta", Int}},
       {{{"Ars_Serie"}}}},
      {"tivas", kCatalogue, true, false,
       {{"Tiva_Id", Int}, {"Tiva_iva", Float}, {"Tiva_rec", Float}, {"tiva_reg", Int},
        {"tiva_art", Int}, {"Tiva_Fecha", DateTime}},
       {{{"tiva_reg", "tiva_art", "Tiva_Fecha DESC"}}}},
      {"TVI", kCatalogue, false, true, {{"TVI_COD", Text, 2, true}, {"TVI_NOM", Text, 50}}, {}, true},
      {"PAIS", kCatalogue, false, true, {{"PAIS_COD", Text, 3, true}, {"PAIS_NOM", Text, 50}}, {}, true},
      {"PROV", kCatalogue, false, true, {{"PROV_COD", Text, 2, true}, {"PROV_NOM", Text, 50}}, {}, true},
  };
}

}  // namespace

int Table::Find(std::string_view column) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (EqualNoCase(columns[i].name, column)) return static_cast<int>(i);
  }
  return -1;
}

std::string ColumnNames(const Table& table) {
  std::string text;
  for (const Column& column : table.columns) text.append(text.empty() ? "" : ", ").append(column.name);
  return text;
}

std::string IndexColumns(const Index& index) {
  std::string text;
  for (const std::string_view column : index.columns) {
    if (!text.empty()) text += ", ";
    text += column;
  }
  return text;
}

std::string IndexName(const Table& table, const Index& index) {
  const std::string columns = ReplaceAll(IndexColumns(index), ", ", "_");
  return "ix_" + std::string(table.name) + "_" + ReplaceAll(columns, " ", "_");
}

const Column* LeadingColumn(const Table& table, std::string_view column) {
  const int at = table.Find(column);
  if (at < 0 || table.columns[at].type == Type::Text) return nullptr;
  const bool leads = std::any_of(table.indexes.begin(), table.indexes.end(),
                                 [&](const Index& index) { return EqualNoCase(index.columns[0], column); });
  return leads ? &table.columns[at] : nullptr;
}

std::span<const Table> Tables() {
  static const std::vector<Table> tables = Describe();
  return tables;
}

const Table* FindTable(std::string_view name) {
  for (const Table& table : Tables()) {
    if (EqualNoCase(table.name, name)) return &table;
  }
  return nullptr;
}

}  // namespace tpv::schema
