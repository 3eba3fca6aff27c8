// What a store and its archive keep of what lies in the other.
#pragma once

namespace tpv::archive {

// Of entries: how many, their cash, cards and payments out, as ArchivoCierres has them.
inline constexpr const char* kEntrySums =
    "COUNT(*), round(total(CASE WHEN DiaCaj_Tipo <> 3 THEN ifnull(DiaCaj_Entrega, 0) - ifnull(DiaCaj_Devolucion, 0) END), "
    "2), round(total(CASE WHEN DiaCaj_Tipo <> 3 THEN DiaCaj_Tarjeta END), 2), round(total(CASE WHEN DiaCaj_Tipo = 3 THEN "
    "DiaCaj_Entrega END), 2)";

// The condition on a ticket's record (Fiscal AS r) that the check of the chain compares with
// the ticket.
inline constexpr const char* kComparedRecord =
    "r.Fis_Tipo <> 'AN' AND r.Fis_Modo = (SELECT Par_Fiscal FROM Parametros) AND r.Fis_Id > (SELECT ifnull(Par_FisRegistro, "
    "0) FROM Parametros) AND NOT EXISTS (SELECT 1 FROM Fiscal AS l WHERE l.Fis_IdCav = r.Fis_IdCav AND l.Fis_IdFav "
    "IS NULL AND l.Fis_Id > r.Fis_Id)";

}  // namespace tpv::archive
