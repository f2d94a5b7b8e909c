#pragma once

// Members of a collection of features (RFC 7946), and the detail of the row that each becomes; none
// where it is passed over.

struct GeoJsonCase {
    const char* name;
    const char* feature;
    const char* detail;
};

inline constexpr const char* none = nullptr; // a detail

inline constexpr GeoJsonCase geoJsonFeatures[] = {
#define POSITION(coordinates)                                                                      \
    R"({"type":"Feature","properties":null,"geometry":{"type":"Point","coordinates":)" coordinates \
    "}}"
#define GEOMETRY(geometry)                                                                         \
    R"({"type":"Feature","properties":{"name":"Ort"},"geometry":)" geometry "}"
#define FEATURE(members)                                                                           \
    R"({"type":"Feature","geometry":{"type":"Point","coordinates":[1,2]})" members "}"
    // positions
    {"two numbers", POSITION("[1,2]"), "2.0000, 1.0000"},
    {"altitude", POSITION("[1,2,300]"), "2.0000, 1.0000"},
    {"altitude below the sea", POSITION("[1,2,-430.5]"), "2.0000, 1.0000"},
    {"altitude beyond the earth", POSITION("[1,2,1e300]"), "2.0000, 1.0000"},
    {"four numbers", POSITION("[1,2,3,4]"), "2.0000, 1.0000"},
    {"nine numbers", POSITION("[1,2,3,4,5,6,7,8,9]"), "2.0000, 1.0000"},
    {"altitude that is no number", POSITION(R"([1,2,"high"])"), "2.0000, 1.0000"},
    {"altitude of null", POSITION("[1,2,null]"), "2.0000, 1.0000"},
    {"one number", POSITION("[1]"), none},
    {"no number", POSITION("[]"), none},
    {"null for a position", POSITION("null"), none},
    {"number for a position", POSITION("1"), none},
    {"text for a position", POSITION(R"("1,2")"), none},
    {"object for a position", POSITION(R"({"lon":1,"lat":2})"), none},
    {"object with numbers for keys", POSITION(R"({"0":1,"1":2})"), none},
    {"position in a position", POSITION("[[1,2]]"), none},
    {"longitude is a text", POSITION(R"(["1",2])"), none},
    {"latitude is a text", POSITION(R"([1,"2"])"), none},
    {"both are texts", POSITION(R"(["1","2"])"), none},
    {"longitude is null", POSITION("[null,2]"), none},
    {"latitude is null", POSITION("[1,null]"), none},
    {"longitude is true", POSITION("[true,2]"), none},
    {"latitude is an array", POSITION("[1,[2]]"), none},
    {"latitude is an object", POSITION("[1,{}]"), none},
    // the limits
    {"origin", POSITION("[0,0]"), "0.0000, 0.0000"},
    {"date line in the east", POSITION("[180,0]"), "0.0000, 180.0000"},
    {"date line in the west", POSITION("[-180,0]"), "0.0000, -180.0000"},
    {"north pole", POSITION("[0,90]"), "90.0000, 0.0000"},
    {"south pole", POSITION("[0,-90]"), "-90.0000, 0.0000"},
    {"both limits", POSITION("[180.0,90.0]"), "90.0000, 180.0000"},
    {"both other limits", POSITION("[-1.8e2,-9E+1]"), "-90.0000, -180.0000"},
    {"next to the date line", POSITION("[179.99999,0]"), "0.0000, 180.0000"},
    {"next to the pole", POSITION("[0,-89.99999]"), "-90.0000, 0.0000"},
    {"just east of the date line", POSITION("[180.00000000000003,0]"), none},
    {"just west of the date line", POSITION("[-180.00000000000003,0]"), none},
    {"just north of the pole", POSITION("[0,90.00000000000002]"), none},
    {"just south of the pole", POSITION("[0,-90.00000000000002]"), none},
    {"once round the earth", POSITION("[361,2]"), none},
    {"latitude first", POSITION("[52.5,100.5]"), none},
    {"degrees in thousands", POSITION("[1000,2000]"), none},
    {"metres of a map", POSITION("[1489199.2,6894699.8]"), none},
    {"longitude as large as numbers are", POSITION("[1.7976931348623157e308,0]"), none},
    {"latitude as small as numbers are", POSITION("[0,-1.7976931348623157e308]"), none},
    {"smallest fraction", POSITION("[2.2250738585072014e-308,0]"), "0.0000, 0.0000"},
    {"rounded up", POSITION("[1.00005001,2.00005001]"), "2.0001, 1.0001"},
    {"rounded down", POSITION("[1.00004999,2.00004999]"), "2.0000, 1.0000"},
    {"integers with a fraction of zero", POSITION("[1.0,2.0]"), "2.0000, 1.0000"},
    {"exponents", POSITION("[1e0,20e-1]"), "2.0000, 1.0000"},
    // geometries
    {"no geometry", R"({"type":"Feature","properties":{"name":"Ort"}})", none},
    {"null geometry", GEOMETRY("null"), none},
    {"text for a geometry", GEOMETRY(R"("Point")"), none},
    {"array for a geometry", GEOMETRY("[1,2]"), none},
    {"empty geometry", GEOMETRY("{}"), none},
    {"geometry without a type", GEOMETRY(R"({"coordinates":[1,2]})"), none},
    {"geometry without coordinates", GEOMETRY(R"({"type":"Point"})"), none},
    {"type in small letters", GEOMETRY(R"({"type":"point","coordinates":[1,2]})"), none},
    {"type with a blank", GEOMETRY(R"({"type":"Point ","coordinates":[1,2]})"), none},
    {"type is a list", GEOMETRY(R"({"type":["Point"],"coordinates":[1,2]})"), none},
    {"type is null", GEOMETRY(R"({"type":null,"coordinates":[1,2]})"), none},
    {"type with an escape", GEOMETRY(R"({"type":"P\u006fint","coordinates":[1,2]})"),
     "2.0000, 1.0000"},
    {"multi point", GEOMETRY(R"({"type":"MultiPoint","coordinates":[[1,2]]})"), none},
    {"line", GEOMETRY(R"({"type":"LineString","coordinates":[[1,2],[3,4]]})"), none},
    {"multi line", GEOMETRY(R"({"type":"MultiLineString","coordinates":[[[1,2],[3,4]]]})"), none},
    {"polygon", GEOMETRY(R"({"type":"Polygon","coordinates":[[[0,0],[1,0],[1,1],[0,0]]]})"), none},
    {"multi polygon",
     GEOMETRY(R"({"type":"MultiPolygon","coordinates":[[[[0,0],[1,0],[1,1],[0,0]]]]})"), none},
    {"collection of geometries",
     GEOMETRY(
         R"({"type":"GeometryCollection","geometries":[{"type":"Point","coordinates":[1,2]}]})"),
     none},
    {"polygon with a point's coordinates", GEOMETRY(R"({"type":"Polygon","coordinates":[1,2]})"),
     none},
    {"multi point with a point's coordinates",
     GEOMETRY(R"({"type":"MultiPoint","coordinates":[1,2]})"), none},
    {"point with a line's coordinates", GEOMETRY(R"({"type":"Point","coordinates":[[1,2],[3,4]]})"),
     none},
    {"coordinates before the type", GEOMETRY(R"({"coordinates":[1,2],"type":"Point"})"),
     "2.0000, 1.0000"},
    {"box in a geometry", GEOMETRY(R"({"type":"Point","bbox":[1,2,1,2],"coordinates":[1,2]})"),
     "2.0000, 1.0000"},
    {"foreign members in a geometry",
     GEOMETRY(R"({"type":"Point","crs":null,"x":{},"coordinates":[1,2]})"), "2.0000, 1.0000"},
    // features
    {"no properties", FEATURE(""), "2.0000, 1.0000"},
    {"null properties", FEATURE(R"(,"properties":null)"), "2.0000, 1.0000"},
    {"empty properties", FEATURE(R"(,"properties":{})"), "2.0000, 1.0000"},
    {"properties are a list", FEATURE(R"(,"properties":["name"])"), "2.0000, 1.0000"},
    {"properties are a text", FEATURE(R"(,"properties":"name")"), "2.0000, 1.0000"},
    {"name is null", FEATURE(R"(,"properties":{"name":null})"), "2.0000, 1.0000"},
    {"name is a number", FEATURE(R"(,"properties":{"name":4711})"), "2.0000, 1.0000"},
    {"name is an object", FEATURE(R"(,"properties":{"name":{"de":"Ort"}})"), "2.0000, 1.0000"},
    {"address of other kinds",
     FEATURE(R"(,"properties":{"street":1,"city":[],"state":{},"country":true,"postcode":null})"),
     "2.0000, 1.0000"},
    {"address of blanks", FEATURE(R"(,"properties":{"street":" ","city":"\t","state":"\u2003"})"),
     "2.0000, 1.0000"},
    {"an address", FEATURE(R"(,"properties":{"street":"Am Markt","city":"Ulm"})"),
     "Am Markt, Ulm · 2.0000, 1.0000"},
    {"identifier of text", FEATURE(R"(,"id":"n1")"), "2.0000, 1.0000"},
    {"identifier of number", FEATURE(R"(,"id":240109189)"), "2.0000, 1.0000"},
    {"identifier that is neither", FEATURE(R"(,"id":[null])"), "2.0000, 1.0000"},
    {"box", FEATURE(R"(,"bbox":[1,2,1,2])"), "2.0000, 1.0000"},
    {"box over the date line", FEATURE(R"(,"bbox":[177,-20,-178,-16])"), "2.0000, 1.0000"},
    {"box of nonsense", FEATURE(R"(,"bbox":"big")"), "2.0000, 1.0000"},
    {"foreign members", FEATURE(R"(,"a":{"b":[1,{"c":null}]},"d":"e")"), "2.0000, 1.0000"},
    {"no type of its own", R"({"geometry":{"type":"Point","coordinates":[1,2]}})",
     "2.0000, 1.0000"},
    {"bare point", R"({"type":"Point","coordinates":[1,2]})", none},
    {"collection in a collection",
     R"({"type":"FeatureCollection","features":[{"geometry":{"type":"Point","coordinates":[1,2]}}]})",
     none},
    {"list of features in the list", R"([{"geometry":{"type":"Point","coordinates":[1,2]}}])",
     none},
    {"members with capitals", R"({"Geometry":{"Type":"Point","Coordinates":[1,2]}})", none},
#undef POSITION
#undef GEOMETRY
#undef FEATURE
};
