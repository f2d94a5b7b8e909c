#pragma once

#include "tests/fuzz/Input.h"
#include "tests/fuzz/StrictJson.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace fuzz {

// The keywords of JSON Schema (2020-12) that the schemas of this program use; another one ends it.
class Schema {
public:
    explicit Schema(const QString& path) {
        QFile file(path);
        require(file.open(QIODevice::ReadOnly), "a schema can be read");
        const auto read = StrictJson::read(file.readAll());
        require(read.has_value(), "a schema is JSON");
        root_ = *read;
    }

    bool fits(const QVariant& document) const { return fits(document, root_); }

private:
    // A number equals another one of its value, and nothing else.
    static bool isSame(const QVariant& one, const QVariant& other) {
        return (isNumber(one) ? isNumber(other) : one.typeId() == other.typeId()) && one == other;
    }

    bool fits(const QVariant& value, const QVariant& schema) const {
        require(isObject(schema), "a schema is an object");
        const QVariantMap rules = schema.toMap();
        return std::all_of(rules.keyBegin(), rules.keyEnd(), [&](const QString& rule) {
            return keeps(value, schema, rule, rules[rule]);
        });
    }

    // What a rule does not speak of keeps it.
    bool keeps(const QVariant& value, const QVariant& schema, const QString& rule,
               const QVariant& asked) const {
        static const QSet<QString> notes{u"$schema"_s, u"$id"_s, u"title"_s, u"description"_s,
                                         u"$defs"_s};
        if (notes.contains(rule))
            return true;
        if (rule == u"$ref")
            return fits(value, root_.toMap()[u"$defs"_s].toMap()[asked.toString().mid(8)]);
        if (rule == u"type")
            return isA(value, asked.toString());
        if (rule == u"const")
            return isSame(value, asked);
        if (rule == u"enum") {
            const QVariantList known = asked.toList();
            return std::any_of(known.begin(), known.end(),
                               [&](const QVariant& each) { return isSame(value, each); });
        }
        if (rule == u"minimum")
            return !isNumber(value) || value.toDouble() >= asked.toDouble();
        if (rule == u"maximum")
            return !isNumber(value) || value.toDouble() <= asked.toDouble();
        if (rule == u"minLength" || rule == u"maxLength" || rule == u"pattern")
            return !isText(value) || keepsText(value.toString(), rule, asked);
        if (rule == u"required" || rule == u"properties" || rule == u"additionalProperties")
            return !isObject(value) || keepsMembers(value.toMap(), schema.toMap(), rule, asked);
        return !isList(value) || keepsElements(value.toList(), rule, asked);
    }

    static bool isA(const QVariant& value, const QString& type) {
        if (type == u"integer")
            return isNumber(value) && value.toDouble() == std::floor(value.toDouble());
        if (type == u"number")
            return isNumber(value);
        static const QHash<QString, int> types{{u"null"_s, QMetaType::Nullptr},
                                               {u"boolean"_s, QMetaType::Bool},
                                               {u"string"_s, QMetaType::QString},
                                               {u"array"_s, QMetaType::QVariantList},
                                               {u"object"_s, QMetaType::QVariantMap}};
        require(types.contains(type), "every type of the schemas is known here");
        return value.typeId() == types[type];
    }

    static bool keepsText(const QString& text, const QString& rule, const QVariant& asked) {
        const auto letters = text.toUcs4();
        if (rule == u"minLength")
            return letters.size() >= asked.toLongLong();
        if (rule == u"maxLength")
            return letters.size() <= asked.toLongLong();
        // The engine writes \u0085 otherwise, and finds nothing in a text with half a pair.
        static QHash<QString, QRegularExpression> known;
        auto& pattern = known[asked.toString()];
        if (pattern.pattern().isEmpty()) {
            QString written = asked.toString();
            written.replace(QRegularExpression(u"\\\\u([0-9a-f]{4})"_s), u"\\x{\\1}"_s);
            pattern.setPattern(written);
            require(pattern.isValid(), "a schema's pattern can be read");
        }
        QString whole = QString::fromUtf8(text.toUtf8());
        return pattern.match(whole.replace(u'\0', u'\1')).hasMatch();
    }

    bool keepsMembers(const QVariantMap& members, const QVariantMap& schema, const QString& rule,
                      const QVariant& asked) const {
        if (rule == u"required") {
            const QStringList names = asked.toStringList();
            return std::all_of(names.begin(), names.end(),
                               [&](const QString& name) { return members.contains(name); });
        }
        const QVariantMap known = schema[u"properties"_s].toMap();
        return std::all_of(members.keyBegin(), members.keyEnd(), [&](const QString& name) {
            return rule == u"properties" ? !known.contains(name) || fits(members[name], known[name])
                                         : known.contains(name) || asked.toBool();
        });
    }

    bool keepsElements(const QVariantList& list, const QString& rule, const QVariant& asked) const {
        const auto isFit = [&](const QVariant& each) { return fits(each, asked); };
        if (rule == u"minItems")
            return list.size() >= asked.toLongLong();
        if (rule == u"maxItems")
            return list.size() <= asked.toLongLong();
        if (rule == u"items")
            return std::all_of(list.begin(), list.end(), isFit);
        if (rule == u"contains")
            return std::any_of(list.begin(), list.end(), isFit);
        require(rule == u"prefixItems", "every keyword of the schemas is known here");
        const QVariantList first = asked.toList();
        for (qsizetype i = 0; i < std::min(list.size(), first.size()); ++i)
            if (!fits(list[i], first[i]))
                return false;
        return true;
    }

    QVariant root_;
};

} // namespace fuzz
