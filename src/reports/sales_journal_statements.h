// What the sales and collections journal asks the store. `days` is made by
// BetweenDays.
#pragma once

#include <cstdint>
#include <string>

namespace tpv::journal {

// One number: how many tickets, those without lines too.
std::string CountSales(const std::string& days);

// Cav_Id, Cav_Fecha, Ticket, Cav_Caja, Agente, Cliente, Venta, Pendiente (euros,
// with tax). Tickets without lines do not appear.
std::string Sales(const std::string& days);

// One row: Cobros, Dtos, Metalico, Tarjeta (euros); null without collections.
std::string CollectionTotals(const std::string& days);

// DiaCaj_Fecha, Ticket, DiaCaj_Caja, DiaCaj_IdAge, Cliente, Metalico, Tarjeta,
// Descuento (euros).
std::string Collections(const std::string& days);

// Lav_IdCav, Lav_Uni, Lav_Des, Importe (euros, with tax), as the lines were keyed.
std::string LinesOfTickets(const std::string& days);

}  // namespace tpv::journal
