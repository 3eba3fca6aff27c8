-- What must hold in a shop's store at every moment, whatever was killed: each
-- statement counts what breaks it.
-- A link without its entry.
SELECT COUNT(*) FROM Tco LEFT JOIN DiaCaj ON DiaCaj_Id = Tco_IdDiaCaj WHERE DiaCaj_Id IS NULL
-- A link without its ticket.
SELECT COUNT(*) FROM Tco LEFT JOIN Cav ON Cav_Id = Tco_IdCav WHERE Cav_Id IS NULL
-- An entry stamped with a closure that is not there, or is another till's.
SELECT COUNT(*) FROM DiaCaj AS entry LEFT JOIN DiaCaj AS closure ON closure.DiaCaj_Id = entry.DiaCaj_IdCierre AND closure.DiaCaj_Tipo = 9 AND closure.DiaCaj_Caja = entry.DiaCaj_Caja WHERE entry.DiaCaj_IdCierre <> 0 AND closure.DiaCaj_Id IS NULL
-- A ticket marked as collected without a link.
SELECT COUNT(*) FROM Cav WHERE Cav_Ticket = 1 AND Cav_Cobrado = 1 AND NOT EXISTS (SELECT * FROM Tco WHERE Tco_IdCav = Cav_Id)
-- A ticket marked as collected whose links do not come to its amount.
SELECT COUNT(*) FROM Cav WHERE Cav_Ticket = 1 AND Cav_Cobrado = 1 AND ABS((SELECT SUM(Tco_Importe) FROM Tco WHERE Tco_IdCav = Cav_Id) - (SELECT SUM(dbo.FncImporteConIva(Lav_Id)) FROM Lav WHERE Lav_IdCav = Cav_Id)) > 0.05
-- A ticket paid more than it costs.
SELECT COUNT(*) FROM Cav WHERE Cav_Ticket = 1 AND (SELECT SUM(Tco_Importe) FROM Tco WHERE Tco_IdCav = Cav_Id) - (SELECT SUM(dbo.FncImporteConIva(Lav_Id)) FROM Lav WHERE Lav_IdCav = Cav_Id) > 0.05
-- A collection whose links do not come to what it collected.
SELECT COUNT(*) FROM DiaCaj WHERE DiaCaj_Tipo IN (1, 2) AND ABS(ISNULL((SELECT SUM(Tco_Importe) FROM Tco WHERE Tco_IdDiaCaj = DiaCaj_Id), 0) - DiaCaj_Cobrado - ISNULL(DiaCaj_Descuento, 0)) > 0.005
-- A closure whose cash, card or payments are not those of the entries that it stamped.
SELECT COUNT(*) FROM DiaCaj AS closure WHERE closure.DiaCaj_Tipo = 9 AND ABS(closure.DiaCaj_CobMet - ISNULL((SELECT SUM(DiaCaj_Entrega - DiaCaj_Devolucion) FROM DiaCaj WHERE DiaCaj_IdCierre = closure.DiaCaj_Id AND DiaCaj_Tipo IN (1, 2)), 0)) > 0.005
SELECT COUNT(*) FROM DiaCaj AS closure WHERE closure.DiaCaj_Tipo = 9 AND ABS(closure.DiaCaj_CobTar - ISNULL((SELECT SUM(DiaCaj_Tarjeta) FROM DiaCaj WHERE DiaCaj_IdCierre = closure.DiaCaj_Id AND DiaCaj_Tipo IN (1, 2)), 0)) > 0.005
SELECT COUNT(*) FROM DiaCaj AS closure WHERE closure.DiaCaj_Tipo = 9 AND ABS(closure.DiaCaj_Pagos - ISNULL((SELECT SUM(DiaCaj_Entrega) FROM DiaCaj WHERE DiaCaj_IdCierre = closure.DiaCaj_Id AND DiaCaj_Tipo = 3), 0)) > 0.005
