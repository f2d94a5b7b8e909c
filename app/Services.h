#pragma once

#include <QLatin1StringView>

namespace app {

// The public services that the window names. Nothing else in the program knows an address.
namespace services {

using Address = QLatin1StringView;

inline constexpr Address geocoder{"https://photon.komoot.io/api/"};
inline constexpr Address openStreetMap{"https://api.openstreetmap.org/api/0.6/map"};
inline constexpr Address overpass{"https://overpass-api.de/api/interpreter"};
inline constexpr Address overpassAlternative{
    "https://maps.mail.ru/osm/tools/overpass/api/interpreter"};
inline constexpr Address routing{"https://routing.openstreetmap.de/routed-car/route/v1/driving"};

// Shown in an empty address field as an example; nobody answers there.
inline constexpr Address example{"https://overpass.example.org/api/interpreter"};

} // namespace services

} // namespace app
