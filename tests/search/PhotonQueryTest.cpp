#include "search/PhotonQuery.h"

#include "search/NXText.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace search;

namespace {

QByteArray addressFor(const QString& text) {
    return photonQuery(QUrl(u"https://geo.example/api/"_s), text).toEncoded();
}

} // namespace

TEST(PhotonQuery, has_three_items_in_order) {
    EXPECT_EQ(addressFor(u"Berlin"_s), "https://geo.example/api/?q=Berlin&limit=8&lang=de");
}

TEST(PhotonQuery, every_character_arrives_as_typed) {
    EXPECT_EQ(addressFor(u"C++ & #1 100% ä 東京 🎬"_s),
              "https://geo.example/api/?q=C%2B%2B%20%26%20%231%20100%25%20%C3%A4%20"
              "%E6%9D%B1%E4%BA%AC%20%F0%9F%8E%AC&limit=8&lang=de");
    EXPECT_EQ(addressFor(u"a=b;c/d?e%2B"_s),
              "https://geo.example/api/?q=a%3Db%3Bc%2Fd%3Fe%252B&limit=8&lang=de");
}

TEST(NXText, trims_texts_and_drops_everything_else) {
    EXPECT_EQ(NXText(QJsonValue(u" \n\tBerlin \u00a0\n"_s)), u"Berlin"_s);
    for (const QJsonValue& value : {QJsonValue(1), QJsonValue(true), QJsonValue()})
        EXPECT_EQ(NXText(value), QString());
}
