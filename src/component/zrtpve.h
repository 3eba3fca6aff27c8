// ZRTPVE: the public class that a host creates, hands the database object and
// the till's context, and asks to open a screen or do a service.
#pragma once

#include <cstdint>
#include <memory>

#include "context/context.h"

namespace tpv {

// Used by one thread, its user-interface thread. Entry methods return when the
// operator closes the screen. An error that no screen handled is thrown to the
// caller. The object validates nothing that is put into its properties.
class Zrtpve {
 public:
  // The ports outlive the object. Its screens and services work on its own context.
  explicit Zrtpve(Ports& ports);
  Zrtpve(const Zrtpve&) = delete;
  Zrtpve& operator=(const Zrtpve&) = delete;

  // IdCliente, Caja, IdAgente, IdAlbaran and MyBd. MyBd must be set before any
  // method below is called.
  Context& context() { return context_; }

  void zTpv();
  void zDiario();
  void zAperturaCierre();
  void zMovCaja();
  void zFacturacion();
  void zDiarioCaja();
  void zInfPendienteCobro();
  void zFindByName();

  void msCancelaVenta(std::int32_t& IdVenta);
  void Abre_Cajon();
  void Emite_Ticket();
  double fnPendienteCliente(std::int32_t& nCliente);  // euros

 private:
  void RequireDatabase() const;
  template <typename Screen, typename... Handed>
  void ShowScreen(Handed... handed);

  Context context_;
};

}  // namespace tpv
