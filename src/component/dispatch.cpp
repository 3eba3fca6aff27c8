#include "component/dispatch.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/text.h"
#include "component/zrtpve.h"

namespace tpv {

namespace {

enum Id : std::uint32_t {
  kMyBd = 0x68030000,
  kIdAlbaran,
  kIdAgente,
  kCaja,
  kIdCliente,
  kTpv = 0x60030005,
  kDiario,
  kAperturaCierre,
  kMovCaja,
  kFacturacion,
  kDiarioCaja,
  kInfPendienteCobro,
  kFindByName,
  kCancelaVenta,
  kAbreCajon,
  kEmiteTicket,
  kPendienteCliente,
};

constexpr std::array<Member, 17> kMembers = {{
    {"IdCliente", kIdCliente, true, 1},
    {"Caja", kCaja, true, 1},
    {"IdAgente", kIdAgente, true, 1},
    {"IdAlbaran", kIdAlbaran, true, 1},
    {"MyBd", kMyBd, true, 1},
    {"zTpv", kTpv, false, 0},
    {"zDiario", kDiario, false, 0},
    {"zAperturaCierre", kAperturaCierre, false, 0},
    {"zMovCaja", kMovCaja, false, 0},
    {"zFacturacion", kFacturacion, false, 0},
    {"zDiarioCaja", kDiarioCaja, false, 0},
    {"zInfPendienteCobro", kInfPendienteCobro, false, 0},
    {"zFindByName", kFindByName, false, 0},
    {"msCancelaVenta", kCancelaVenta, false, 1},
    {"Abre_Cajon", kAbreCajon, false, 0},
    {"Emite_Ticket", kEmiteTicket, false, 0},
    {"fnPendienteCliente", kPendienteCliente, false, 1},
}};

const Member& MemberOf(std::uint32_t id) {
  const auto found = std::find_if(kMembers.begin(), kMembers.end(),
                                  [id](const Member& member) { return member.id == id; });
  if (found == kMembers.end()) {
    throw DispatchError(DispatchFault::UnknownId,
                        "ZRTPVE no tiene ningún miembro con el id " + std::to_string(id));
  }
  return *found;
}

[[noreturn]] void WrongKind(const Member& member) {
  throw DispatchError(DispatchFault::WrongKind,
                      "ZRTPVE." + std::string(member.name) + " no se puede usar de esa forma");
}

void RequireCount(const Member& member, std::size_t expected, std::size_t found) {
  if (expected == found) return;
  throw DispatchError(DispatchFault::WrongCount, "ZRTPVE." + std::string(member.name) +
                                                     ": número de argumentos incorrecto");
}

// Runs a conversion and names the member when the value does not fit.
template <typename Conversion>
auto Converted(const Member& member, Conversion conversion) {
  try {
    return conversion();
  } catch (const ConversionError& error) {
    throw DispatchError(DispatchFault::BadValue, error.WithMember(member.name).what());
  }
}

Variant GetProperty(Context& context, const Member& member) {
  switch (member.id) {
    case kIdCliente: return Variant(context.IdCliente);
    case kCaja: return Variant(context.Caja);
    case kIdAgente: return Variant(context.IdAgente);
    case kIdAlbaran: return Variant(context.IdAlbaran);
    default: return context.MyBd ? Variant(Variant::ObjectRef(context.MyBd)) : Variant();
  }
}

void PutDatabase(Context& context, const Member& member, const Variant& value) {
  auto database = value.IsNull()
                      ? nullptr
                      : std::dynamic_pointer_cast<DatabaseObject>(
                            Converted(member, [&] { return value.ToObject(); }));
  if (!value.IsNull() && !database) {
    throw DispatchError(DispatchFault::BadValue, "MyBd: no es un objeto de base de datos");
  }
  context.MyBd = std::move(database);
}

void PutProperty(Context& context, const Member& member, const Variant& value) {
  switch (member.id) {
    case kCaja:
      context.Caja = Converted(member, [&] { return value.ToInt16(); });
      return;
    case kIdCliente:
      context.IdCliente = Converted(member, [&] { return value.ToInt32(); });
      return;
    case kIdAgente:
      context.IdAgente = Converted(member, [&] { return value.ToInt32(); });
      return;
    default:
      context.IdAlbaran = Converted(member, [&] { return value.ToInt32(); });
  }
}

Variant UseProperty(Context& context, const Member& member, InvokeKind kind,
                    std::span<Variant> arguments) {
  if (kind == InvokeKind::Get) {
    RequireCount(member, 0, arguments.size());
    return GetProperty(context, member);
  }
  const bool by_reference = member.id == kMyBd;
  if (kind != (by_reference ? InvokeKind::PutReference : InvokeKind::Put)) WrongKind(member);
  RequireCount(member, 1, arguments.size());
  if (by_reference) {
    PutDatabase(context, member, arguments[0]);
  } else {
    PutProperty(context, member, arguments[0]);
  }
  return {};
}

Variant CallMethod(Zrtpve& component, const Member& member, std::span<Variant> arguments) {
  const auto by_reference = [&] {
    return Converted(member, [&] { return arguments[0].ToInt32(); });
  };
  switch (member.id) {
    case kTpv: component.zTpv(); break;
    case kDiario: component.zDiario(); break;
    case kAperturaCierre: component.zAperturaCierre(); break;
    case kMovCaja: component.zMovCaja(); break;
    case kFacturacion: component.zFacturacion(); break;
    case kDiarioCaja: component.zDiarioCaja(); break;
    case kInfPendienteCobro: component.zInfPendienteCobro(); break;
    case kFindByName: component.zFindByName(); break;
    case kAbreCajon: component.Abre_Cajon(); break;
    case kEmiteTicket: component.Emite_Ticket(); break;
    case kCancelaVenta: {
      std::int32_t sale = by_reference();
      component.msCancelaVenta(sale);
      arguments[0] = Variant(sale);
      break;
    }
    default: {
      std::int32_t customer = by_reference();
      const double debt = component.fnPendienteCliente(customer);
      arguments[0] = Variant(customer);
      return Variant(debt);
    }
  }
  return {};
}

}  // namespace

std::span<const Member> Members() { return kMembers; }

std::uint32_t DispatchId(std::string_view name) {
  for (const Member& member : kMembers) {
    if (EqualNoCase(member.name, name)) return member.id;
  }
  throw DispatchError(DispatchFault::UnknownName,
                      "ZRTPVE no tiene el miembro «" + std::string(name) + "»");
}

Variant Invoke(Zrtpve& component, std::uint32_t id, InvokeKind kind, std::span<Variant> arguments) {
  const Member& member = MemberOf(id);
  if (member.property) {
    if (kind == InvokeKind::Call) WrongKind(member);
    return UseProperty(component.context(), member, kind, arguments);
  }
  if (kind != InvokeKind::Call) WrongKind(member);
  RequireCount(member, member.arguments, arguments.size());
  return CallMethod(component, member, arguments);
}

}  // namespace tpv
