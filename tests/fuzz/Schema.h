#pragma once

#include "tests/fuzz/Input.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <optional>
#include <variant>
#include <vector>

// JSON read by the letter of RFC 8259, and the schemas of the files that are handed over: a
// document by other means than those that wrote it.
namespace fuzz {

using namespace Qt::StringLiterals;

struct Json {
    struct Number {
        QByteArray text;
        double value;
    };
    using List = std::vector<Json>;
    using Object = std::map<QString, Json>;
    std::variant<std::nullptr_t, bool, Number, QString, List, Object> value;

    template<typename Kind>
    const Kind* as() const {
        return std::get_if<Kind>(&value);
    }
    // Nothing where this is no object that has it.
    const Json* member(const QString& name) const {
        const auto* object = as<Object>();
        const auto found = object ? object->find(name) : Object::const_iterator();
        return object && found != object->end() ? &found->second : nullptr;
    }
    QString text() const { return as<QString>() ? *as<QString>() : QString(); }
};

class JsonReader {
public:
    // Nothing where the bytes are no JSON, or where a member stands twice.
    static std::optional<Json> read(const QByteArray& bytes) {
        JsonReader reader(bytes);
        auto document = reader.element();
        return reader.at_ == bytes.size() ? document : std::nullopt;
    }

private:
    explicit JsonReader(const QByteArray& bytes) : bytes_(bytes) {}

    char next() const { return at_ < bytes_.size() ? bytes_.at(at_) : '\0'; }
    bool take(const char* word) {
        const QByteArrayView letters(word);
        const bool isHere = QByteArrayView(bytes_).sliced(at_).startsWith(letters);
        at_ += isHere ? letters.size() : 0;
        return isHere;
    }
    bool takeDigits() {
        const qsizetype begin = at_;
        while (next() >= '0' && next() <= '9')
            ++at_;
        return at_ > begin;
    }
    void skipBlanks() {
        while (next() == ' ' || next() == '\n' || next() == '\r' || next() == '\t')
            ++at_;
    }

    std::optional<Json> element() {
        skipBlanks();
        auto read = value();
        skipBlanks();
        return read;
    }

    std::optional<Json> value() {
        if (take("null"))
            return Json{nullptr};
        if (take("true"))
            return Json{true};
        if (take("false"))
            return Json{false};
        if (take("["))
            return list();
        if (take("{"))
            return object();
        if (next() != '"')
            return number();
        const auto read = string();
        return read ? std::optional(Json{*read}) : std::nullopt;
    }

    std::optional<Json> number() {
        const qsizetype begin = at_;
        take("-");
        if (!take("0") && !takeDigits())
            return std::nullopt;
        if (take(".") && !takeDigits())
            return std::nullopt;
        if (take("e") || take("E")) {
            if (!take("+"))
                take("-");
            if (!takeDigits())
                return std::nullopt;
        }
        const QByteArray text = bytes_.sliced(begin, at_ - begin);
        return Json{Json::Number{text, std::strtod(text.constData(), nullptr)}};
    }

    std::optional<QString> string() {
        QString read;
        for (++at_; at_ < bytes_.size();) {
            const qsizetype begin = at_;
            while (at_ < bytes_.size() && next() != '"' && next() != '\\' &&
                   static_cast<unsigned char>(next()) >= 0x20)
                ++at_;
            const QByteArray plain = bytes_.sliced(begin, at_ - begin);
            const QString letters = QString::fromUtf8(plain);
            if (letters.toUtf8() != plain)
                return std::nullopt;
            read += letters;
            if (take("\""))
                return read;
            if (!take("\\"))
                return std::nullopt;
            const char kind = next();
            ++at_;
            if (kind == 'u') {
                bool isHexadecimal = false;
                const QByteArray digits = bytes_.mid(at_, 4);
                const ushort unit = digits.toUShort(&isHexadecimal, 16);
                if (digits.size() < 4 || !isHexadecimal || !std::isxdigit(digits.front()))
                    return std::nullopt;
                read += QChar(unit);
                at_ += 4;
                continue;
            }
            const qsizetype which = QByteArray("\"\\/bfnrt").indexOf(kind);
            if (which < 0)
                return std::nullopt;
            read += QLatin1Char("\"\\/\b\f\n\r\t"[which]);
        }
        return std::nullopt;
    }

    std::optional<Json> list() {
        Json::List read;
        skipBlanks();
        if (take("]"))
            return Json{read};
        do {
            auto each = element();
            if (!each)
                return std::nullopt;
            read.push_back(std::move(*each));
        } while (take(","));
        return take("]") ? std::optional(Json{std::move(read)}) : std::nullopt;
    }

    std::optional<Json> object() {
        Json::Object read;
        skipBlanks();
        if (take("}"))
            return Json{read};
        do {
            skipBlanks();
            const auto name = next() == '"' ? string() : std::nullopt;
            skipBlanks();
            if (!name || !take(":"))
                return std::nullopt;
            auto each = element();
            if (!each || !read.emplace(*name, std::move(*each)).second)
                return std::nullopt;
        } while (take(","));
        return take("}") ? std::optional(Json{std::move(read)}) : std::nullopt;
    }

    const QByteArray& bytes_;
    qsizetype at_ = 0;
};

inline bool isSame(const Json& one, const Json& other) {
    if (one.value.index() != other.value.index())
        return false;
    if (const auto* list = one.as<Json::List>())
        return std::equal(list->begin(), list->end(), other.as<Json::List>()->begin(),
                          other.as<Json::List>()->end(), isSame);
    if (const auto* object = one.as<Json::Object>())
        return std::equal(object->begin(), object->end(), other.as<Json::Object>()->begin(),
                          other.as<Json::Object>()->end(), [](const auto& a, const auto& b) {
                              return a.first == b.first && isSame(a.second, b.second);
                          });
    if (const auto* number = one.as<Json::Number>())
        return number->value == other.as<Json::Number>()->value;
    if (const auto* text = one.as<QString>())
        return *text == *other.as<QString>();
    return !one.as<bool>() || *one.as<bool>() == *other.as<bool>();
}

// Whether this is what the toolkit read.
inline bool isSame(const Json& one, const QJsonValue& other) {
    if (const auto* object = one.as<Json::Object>()) {
        const QJsonObject members = other.toObject();
        return other.isObject() && qsizetype(object->size()) == members.size() &&
               std::all_of(object->begin(), object->end(), [&](const auto& each) {
                   return members.contains(each.first) &&
                          isSame(each.second, members.value(each.first));
               });
    }
    if (const auto* list = one.as<Json::List>()) {
        const QJsonArray elements = other.toArray();
        return other.isArray() &&
               std::equal(list->begin(), list->end(), elements.begin(), elements.end(),
                          [](const Json& a, const QJsonValue& b) { return isSame(a, b); });
    }
    if (const auto* number = one.as<Json::Number>()) {
        const QVariant value = other.toVariant();
        return other.isDouble() && (value.typeId() == QMetaType::LongLong
                                        ? number->text == QByteArray::number(value.toLongLong())
                                        : number->value == other.toDouble());
    }
    if (const auto* text = one.as<QString>())
        return other.isString() && *text == other.toString();
    return one.as<bool>() ? other.isBool() && *one.as<bool>() == other.toBool() : other.isNull();
}

// The keywords of JSON Schema (2020-12) that the schemas of this program use; another one ends it.
class Schema {
public:
    explicit Schema(const QString& path) {
        QFile file(path);
        require(file.open(QIODevice::ReadOnly), "a schema can be read");
        const auto read = JsonReader::read(file.readAll());
        require(read.has_value(), "a schema is JSON");
        root_ = *read;
    }

    bool fits(const Json& document) const { return fits(document, root_); }

private:
    static qsizetype count(const Json& size) { return qsizetype(size.as<Json::Number>()->value); }

    bool fits(const Json& value, const Json& schema) const {
        const auto& rules = *schema.as<Json::Object>();
        return std::all_of(rules.begin(), rules.end(), [&](const auto& rule) {
            return keeps(value, schema, rule.first, rule.second);
        });
    }

    // What a rule does not speak of keeps it.
    bool keeps(const Json& value, const Json& schema, const QString& rule,
               const Json& asked) const {
        static const QSet<QString> notes{u"$schema"_s, u"$id"_s, u"title"_s, u"description"_s,
                                         u"$defs"_s};
        if (notes.contains(rule))
            return true;
        if (rule == u"$ref")
            return fits(value, *root_.member(u"$defs"_s)->member(asked.text().mid(8)));
        if (rule == u"type")
            return isA(value, asked.text());
        if (rule == u"const")
            return isSame(value, asked);
        if (rule == u"enum") {
            const auto& known = *asked.as<Json::List>();
            return std::any_of(known.begin(), known.end(),
                               [&](const Json& each) { return isSame(value, each); });
        }
        if (const auto* number = value.as<Json::Number>(); rule == u"minimum" || rule == u"maximum")
            return !number ||
                   (rule == u"minimum" ? number->value >= asked.as<Json::Number>()->value
                                       : number->value <= asked.as<Json::Number>()->value);
        if (rule == u"minLength" || rule == u"maxLength" || rule == u"pattern")
            return !value.as<QString>() || keepsText(value.text(), rule, asked);
        if (rule == u"required" || rule == u"properties" || rule == u"additionalProperties")
            return !value.as<Json::Object>() || keepsMembers(value, schema, rule, asked);
        const auto* list = value.as<Json::List>();
        return !list || keepsElements(*list, rule, asked);
    }

    static bool isA(const Json& value, const QString& type) {
        const auto* number = value.as<Json::Number>();
        if (type == u"integer")
            return number && number->value == std::floor(number->value);
        static const std::map<QString, std::size_t> places{{u"null"_s, 0},   {u"boolean"_s, 1},
                                                           {u"number"_s, 2}, {u"string"_s, 3},
                                                           {u"array"_s, 4},  {u"object"_s, 5}};
        return value.value.index() == places.at(type);
    }

    static bool keepsText(const QString& text, const QString& rule, const Json& asked) {
        const auto letters = text.toUcs4();
        if (rule == u"minLength")
            return letters.size() >= count(asked);
        if (rule == u"maxLength")
            return letters.size() <= count(asked);
        // The engine writes \u0085 otherwise, and finds nothing in a text with half a pair.
        static QHash<QString, QRegularExpression> known;
        auto& pattern = known[asked.text()];
        if (pattern.pattern().isEmpty()) {
            QString written = asked.text();
            written.replace(QRegularExpression(u"\\\\u([0-9a-f]{4})"_s), u"\\x{\\1}"_s);
            pattern.setPattern(written);
            require(pattern.isValid(), "a schema's pattern can be read");
        }
        QString whole = QString::fromUtf8(text.toUtf8());
        return pattern.match(whole.replace(u'\0', u'\1')).hasMatch();
    }

    bool keepsMembers(const Json& value, const Json& schema, const QString& rule,
                      const Json& asked) const {
        const auto& members = *value.as<Json::Object>();
        if (rule == u"required") {
            const auto& names = *asked.as<Json::List>();
            return std::all_of(names.begin(), names.end(), [&](const Json& name) {
                return value.member(name.text()) != nullptr;
            });
        }
        const Json* properties = schema.member(u"properties"_s);
        return std::all_of(members.begin(), members.end(), [&](const auto& each) {
            const Json* known = properties ? properties->member(each.first) : nullptr;
            return rule == u"properties" ? !known || fits(each.second, *known)
                                         : known || *asked.as<bool>();
        });
    }

    bool keepsElements(const Json::List& list, const QString& rule, const Json& asked) const {
        const auto isFit = [&](const Json& each) { return fits(each, asked); };
        if (rule == u"minItems")
            return qsizetype(list.size()) >= count(asked);
        if (rule == u"maxItems")
            return qsizetype(list.size()) <= count(asked);
        if (rule == u"items")
            return std::all_of(list.begin(), list.end(), isFit);
        if (rule == u"contains")
            return std::any_of(list.begin(), list.end(), isFit);
        require(rule == u"prefixItems", "every keyword of the schemas is known here");
        const auto& first = *asked.as<Json::List>();
        for (std::size_t i = 0; i < std::min(list.size(), first.size()); ++i)
            if (!fits(list[i], first[i]))
                return false;
        return true;
    }

    Json root_{nullptr};
};

} // namespace fuzz
