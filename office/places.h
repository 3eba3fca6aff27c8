// What addresses choose from: street types, countries and provinces.
#pragma once

namespace tpv {
class Connection;
}

namespace tpv::office {

// Inserts them into the shared catalogue, whose lists are empty.
void FillPlaces(Connection& connection);

}  // namespace tpv::office
