#pragma once

#include "TemporaryFolder.h"
#include "platform/Descriptors.h"

#include <QJsonObject>
#include <QStringList>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;

// The sandbox's geocoder, which curl reaches over real TLS for as long as the tests of a program
// run. It is no child of this process, so that "no child is left" can be asked without exception;
// it ends with its standard input, of which this process holds the other end.
class Geocoder : public testing::Environment {
public:
    // The one of this program; to be made before the tests run.
    static Geocoder& shared();

    void SetUp() override;
    void TearDown() override;

    // Forgets what it was told and what it was asked. For the beginning of each test.
    void reset();

    // From now on it answers `query`, or "*" all others, as `behaviour` says; the keys are those
    // that `sandbox/geocoder --help` lists.
    void behave(const QJsonObject& behaviour, const QString& query = u"*"_s);

    // The records of one kind ("request", "abandoned", ...) since the reset.
    QList<QJsonObject> records(const char* kind) const;
    // The query texts that it was asked, in order.
    QStringList asked() const;

private:
    Geocoder() = default;
    std::filesystem::path file(const char* name) const { return *folder_ / name; }

    std::unique_ptr<TemporaryFolder> folder_;
    platform::UniqueFd input_; // our end of its standard input
    QJsonObject behaviours_;
    qsizetype forgotten_ = 0; // bytes of its record that belong to earlier tests
};

// A program whose tests include this has it before the first of them.
inline Geocoder& geocoder = Geocoder::shared();

// A place as the geocoder offers it, and an answer made of places.
QJsonObject feature(const QString& name, const QJsonObject& properties = {}, double longitude = 13,
                    double latitude = 52);
QJsonObject answer(const QList<QJsonObject>& places);
// A behaviour: answers with this body.
QJsonObject withBody(const QJsonObject& body);
