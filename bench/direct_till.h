// A sale done by hand on the engine: the same reads and writes as the screens'.
#pragma once

#include "bench/direct_store.h"

namespace tpv::bench {

class DirectTill {
 public:
  explicit DirectTill(DirectStore& store) : store_(store) {}

  void StartSale();
  void Scan(const std::string& code);
  void Finish();
  // Is the till open, its last ticket, the next number (taken and given back).
  void TillState();
  double Debt(int customer);

 private:
  void Redraw();
  void TakeNumber();

  DirectStore& store_;
  std::int64_t sale_ = 0;

  Prepared parameters_{store_, "SELECT * FROM Parametros LIMIT 1"};
  Prepared counter_{store_, "UPDATE Contadores SET cont_numero = cont_numero + 1 WHERE "
                            "cont_tipo = 'ALBVENTA' AND cont_serie = 'T'"};
  Prepared insert_sale_{store_,
                        "INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Fecha, Cav_Ref, Cav_Caja, "
                        "Cav_Agente, Cav_IdCli, Cav_NFiscal, Cav_Ticket, Cav_Situa, Cav_Cobrado) SELECT "
                        "'T', cont_numero, tpv_getdate(), '1', 1, 1, 1, 'CONTADO', 1, 1, 0 FROM Contadores "
                        "WHERE cont_tipo = 'ALBVENTA' AND cont_serie = 'T'"};
  Prepared number_{store_, "SELECT cont_numero FROM Contadores WHERE cont_tipo = 'ALBVENTA' AND "
                           "cont_serie = 'T'"};
  Prepared highest_number_{store_, "SELECT MAX(Cav_Numero) FROM Cav WHERE Cav_Serie = 'T'"};
  Prepared last_ticket_{store_, "SELECT MAX(Cav_Id) FROM Cav WHERE Cav_Ticket = 1 AND Cav_Caja = 1"};
  Prepared collected_{store_, "SELECT (SELECT SUM(Tco_Importe) FROM Tco WHERE Tco_IdCav = Cav_Id) FROM Cav "
                              "WHERE Cav_Id = ?"};
  Prepared article_{store_,
                    "SELECT ART_Id, ART_Cod, art_des, art_pve, art_tiva, art_alma, alm_des, art_for, "
                    "art_mat, ART_FAC, artcli_dto1, artcli_dto2, artcli_fijo, art_pvpi FROM ART LEFT JOIN "
                    "alm ON art_alma = alm_id LEFT JOIN artcli ON artcli_idart = ART_Id AND artcli_idcli = "
                    "1 WHERE ART_Cod = ?1 OR ART_BARCODE = ?1"};
  Prepared tax_{store_,
                "SELECT Tiva_Id, Tiva_iva, Tiva_rec FROM tivas WHERE tiva_reg = 1 AND tiva_art = ? "
                "AND Tiva_Fecha <= tpv_getdate() ORDER BY Tiva_Fecha DESC LIMIT 1"};
  Prepared insert_line_{store_,
                        "INSERT INTO Lav (Lav_IdCav, Lav_Idart, Lav_CodArt, Lav_Des, Lav_Uni, Lav_precio, "
                        "Lav_DTo1, Lav_Importe, Lav_Tiva) VALUES (?, ?, ?, 'Leche entera 1 l', 1, 0.92, 0, "
                        "0.92, 3)"};
  Prepared newest_line_{store_, "SELECT MAX(Lav_Id) FROM Lav"};
  Prepared move_stock_{store_, "INSERT INTO Movi (movi_idlav, movi_idart, movi_idalma, movi_uni) VALUES "
                               "(?, ?, 1, 1)"};
  Prepared stock_{store_, "SELECT exis_uni FROM Exis WHERE exis_idart = ? AND exis_idalma = 1 LIMIT 1"};
  Prepared take_stock_{store_, "UPDATE Exis SET exis_uni = exis_uni - 1 WHERE exis_idart = ? AND "
                               "exis_idalma = 1"};
  Prepared lines_{store_,
                  "SELECT Lav_Id, Lav_Idart, Lav_CodArt, Tiva_iva, Tiva_rec, Lav_Des, Lav_Uni, "
                  "round(Lav_precio + Lav_precio / 100 * Tiva_iva, 2), Lav_DTo1, Lav_precio, "
                  "round(Lav_Importe + Lav_Importe / 100 * Tiva_iva, 2) FROM Lav JOIN tivas ON "
                  "Tiva_Id = Lav_Tiva WHERE Lav_IdCav = ?"};
  Prepared totals_{store_,
                   "SELECT SUM(Lav_Importe), SUM(round(Lav_Importe + Lav_Importe / 100 * Tiva_iva, 2)) FROM "
                   "Cav JOIN Lav ON Lav_IdCav = Cav_Id JOIN tivas ON Tiva_Id = Lav_Tiva WHERE "
                   "Cav_Id = ?"};
  Prepared street_types_{store_, "SELECT * FROM TVI"};
  Prepared countries_{store_, "SELECT * FROM PAIS"};
  Prepared provinces_{store_, "SELECT * FROM PROV"};
  Prepared methods_{store_, "SELECT * FROM Fco"};
  Prepared customer_{store_,
                     "SELECT * FROM Cli LEFT JOIN CliDir ON CLIDIR_CLI = CLI_ID LEFT JOIN Dir ON DIR_ID = "
                     "CLIDIR_DIR WHERE CLI_COD = 1 LIMIT 1"};
  Prepared debt_{store_,
                 "SELECT round(SUM(Lav_Importe + Lav_Importe / 100 * Tiva_iva), 2) - ifnull((SELECT "
                 "SUM(Tco_Importe) FROM Tco WHERE Tco_IdCav = Cav_Id), 0), Cav_Id, CASE WHEN "
                 "length(Cav_Serie) > 0 THEN Cav_Serie || '/' ELSE '' END || Cav_Numero, Cav_Fecha, (SELECT "
                 "Age_Nom FROM Age WHERE Age_ID = Cav_Agente), round(SUM(Lav_Importe + Lav_Importe / 100 * "
                 "Tiva_iva), 2), ifnull((SELECT SUM(Tco_Importe) FROM Tco WHERE Tco_IdCav = Cav_Id), 0) FROM "
                 "Cav JOIN Lav ON Lav_IdCav = Cav_Id JOIN tivas ON Tiva_Id = Lav_Tiva WHERE "
                 "Cav_Ticket = 1 AND Cav_Cobrado = 0 AND Cav_IdCli = ? GROUP BY Cav_Id, Cav_Serie, "
                 "Cav_Numero, Cav_Fecha, Cav_Caja, Cav_Situa, Cav_Agente, Cav_IdFactura, Cav_NFiscal ORDER BY "
                 "Cav_Fecha DESC"};
  Prepared update_sale_{store_,
                        "UPDATE Cav SET Cav_IdCli = 1, Cav_NFiscal = 'CONTADO', Cav_NCom = 'CONTADO', "
                        "Cav_SG = 'AL', Cav_NOMBRE = '', Cav_Num = 0, Cav_ESCALERA = '', Cav_Piso = '', "
                        "Cav_Puerta = '', Cav_Cp = '', Cav_Pais = '011', Cav_PROVINCIA = '01', "
                        "Cav_POBLACION = '', Cav_CliDoc = '', Cav_SProv = 'ALAVA', Cav_SPais = 'ESPAÑA', "
                        "Cav_Cobrado = 1 WHERE Cav_Id = ?"};
  Prepared insert_entry_{store_,
                         "INSERT INTO DiaCaj (DiaCaj_Fecha, DiaCaj_IdUsu, DiaCaj_IdAge, DiaCaj_Caja, "
                         "DiaCaj_Tipo, DiaCaj_IdCliPr, DiaCaj_Modo, DiaCaj_Entrega, DiaCaj_Tarjeta, "
                         "DiaCaj_Devolucion, DiaCaj_Cobrado, DiaCaj_Descuento, DiaCaj_Obs) VALUES "
                         "(tpv_getdate(), 1, 1, 1, 1, 1, 1, 10, 0, 0.8, 9.2, 0, NULL)"};
  Prepared newest_entry_{store_, "SELECT MAX(DiaCaj_Id) FROM DiaCaj"};
  Prepared link_{store_, "INSERT INTO Tco (Tco_IdDiaCaj, Tco_IdCav, Tco_Importe, Tco_Obs) VALUES (?, ?, 9.2, "
                         "NULL)"};
  Prepared ticket_total_{store_,
                         "SELECT SUM(round(Lav_Importe + Lav_Importe / 100 * Tiva_iva, 2)) FROM Lav JOIN "
                         "tivas ON Tiva_Id = Lav_Tiva WHERE Lav_IdCav = ?"};
  Prepared ticket_lines_{store_,
                         "SELECT Cav_Serie, Cav_Numero, Cav_Fecha, Cav_Ref, Cav_NFiscal, Lav_Des, Lav_Uni, "
                         "Lav_DTo1, round(Lav_precio + Lav_precio / 100 * Tiva_iva, 2), round(Lav_Importe + "
                         "Lav_Importe / 100 * Tiva_iva, 2), Age_Nom, CLI_COD FROM Lav JOIN Cav ON Lav_IdCav "
                         "= Cav_Id JOIN tivas ON Tiva_Id = Lav_Tiva JOIN Cli ON CLI_ID = Cav_IdCli "
                         "JOIN Age ON Age_ID = Cav_Agente WHERE Lav_IdCav = ?"};
  Prepared ticket_payment_{store_,
                           "SELECT DiaCaj_Modo, DiaCaj_Entrega, DiaCaj_Tarjeta, DiaCaj_Devolucion, "
                           "DiaCaj_Descuento, DiaCaj_Cobrado FROM Tco JOIN DiaCaj ON DiaCaj_Id = "
                           "Tco_IdDiaCaj WHERE Tco_IdCav = ? AND DiaCaj_Tipo = 1 ORDER BY DiaCaj_Fecha "
                           "LIMIT 1"};
  Prepared till_state_{store_, "SELECT DiaCaj_Tipo FROM DiaCaj WHERE DiaCaj_Caja = 1 ORDER BY DiaCaj_Caja, "
                               "DiaCaj_Fecha DESC LIMIT 1"};
  Prepared till_clock_{store_, "SELECT tpv_getdate(), (SELECT MAX(DiaCaj_Fecha) FROM DiaCaj WHERE "
                               "DiaCaj_Caja = 1)"};
};

}  // namespace tpv::bench
