"""The sandbox's places: gazetteer.tsv, and how a query finds them.

A place is found when each word of the query begins some word of the place, whatever the case and
the accents; "Muenchen" finds München as well. The name counts most, then how much there is of it.
"""
import dataclasses
import pathlib
import re
import unicodedata

FILE = pathlib.Path(__file__).resolve().parent / "gazetteer.tsv"
COLUMNS = ("name", "street", "housenumber", "postcode", "city", "county", "state", "country",
           "countrycode", "lat", "lon", "kind", "weight", "aliases")
# What the address says of a feature, in the order in which Photon's answers are read.
ADDRESS = ("name", "street", "housenumber", "postcode", "city", "county", "state", "country")
SPELLED_OUT = str.maketrans({"ä": "ae", "ö": "oe", "ü": "ue"})
WORD = re.compile(r"[^\W_]+")


def fold(text):
    """text without case and accents."""
    spread = unicodedata.normalize("NFD", text.casefold())
    return "".join(mark for mark in spread if not unicodedata.combining(mark))


def words(text):
    """The folded words of text, each umlaut both as its vowel and spelled out."""
    plain = unicodedata.normalize("NFC", text.casefold())
    return list(dict.fromkeys(WORD.findall(fold(plain)) + WORD.findall(fold(plain.translate(SPELLED_OUT)))))


@dataclasses.dataclass
class Place:
    name: str
    street: str
    housenumber: str
    postcode: str
    city: str
    county: str
    state: str
    country: str
    countrycode: str
    lat: float
    lon: float
    kind: str
    weight: int
    aliases: str

    def __post_init__(self):
        self.lat, self.lon, self.weight = float(self.lat), float(self.lon), int(self.weight)
        self.name_words = words(f"{self.name} {self.aliases}")
        self.all_words = self.name_words + words(
            f"{self.street} {self.housenumber} {self.postcode} {self.city} {self.county} "
            f"{self.state} {self.country} {self.countrycode}")
        self.names = {fold(each) for each in (self.name, *self.aliases.split("|"))}

    def feature(self):
        properties = {"type": self.kind, "countrycode": self.countrycode}
        properties.update((key, getattr(self, key)) for key in ADDRESS if getattr(self, key))
        return {"type": "Feature", "properties": properties,
                "geometry": {"type": "Point", "coordinates": [self.lon, self.lat]}}


def load(file=FILE):
    """All places of the file. A line that does not fit is a fault of the file: ValueError."""
    places = []
    for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        cells = line.split("\t")
        if len(cells) != len(COLUMNS):
            raise ValueError(f"{file.name}:{number}: {len(cells)} cells instead of {len(COLUMNS)}")
        places.append(Place(*cells))
    return places


def search(places, text, limit):
    """The places that text finds, the best first, at most limit of them."""
    asked = WORD.findall(fold(text))
    if not asked:
        return []

    def score(place):
        if not all(any(word.startswith(part) for word in place.all_words) for part in asked):
            return None
        in_name = sum(any(word.startswith(part) for word in place.name_words) for part in asked)
        return (fold(text.strip()) in place.names, in_name, place.weight)

    found = [(rank, place) for place in places if (rank := score(place)) is not None]
    found.sort(key=lambda pair: pair[0], reverse=True)
    return [place for _, place in found[:limit]]
