#pragma once

#include <QLatin1StringView>

#include <iterator>

// The public services that the window names. Nothing else in the program knows an address.
namespace app::services {

using Address = QLatin1StringView;

inline constexpr Address geocoder{"https://photon.komoot.io/api/"};
inline constexpr Address openStreetMap{"https://api.openstreetmap.org/api/0.6/map"};
inline constexpr Address overpass{"https://overpass-api.de/api/interpreter"};
inline constexpr Address overpassAlternative{
    "https://maps.mail.ru/osm/tools/overpass/api/interpreter"};
inline constexpr Address routing{"https://routing.openstreetmap.de/routed-car/route/v1/driving"};

// Shown in an empty address field as an example; nobody answers there.
inline constexpr Address dataExample{"https://overpass.example.org/api/interpreter"};
inline constexpr Address routingExample{"https://routing.example.org/routed-car/route/v1/driving"};

// Of the data service in that place of the pop-up; empty for the one that the person types.
constexpr Address dataAddress(int index) {
    constexpr Address addresses[]{openStreetMap, overpass, overpassAlternative};
    return index >= 0 && index < int(std::size(addresses)) ? addresses[index] : Address();
}

} // namespace app::services
