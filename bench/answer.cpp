// Understanding an answer of 1 MiB, beside the JSON parser alone on the same bytes.
//     build/bench/bin/bench_answer --benchmark_repetitions=9
//     --benchmark_enable_random_interleaving=true
#include "search/Photon.h"

#include <QJsonDocument>

#include <benchmark/benchmark.h>

namespace {

using namespace Qt::StringLiterals;
using namespace search;

QByteArray longestAnswer() {
    const QByteArray feature =
        R"({"type":"Feature","geometry":{"type":"Point","coordinates":[13.3951309,52.5173885]},)"
        R"("properties":{"osm_type":"R","osm_id":62422,"extent":[13.08,52.67,13.76,52.33],)"
        R"("country":"Deutschland","city":"Berlin","countrycode":"DE","postcode":"10117",)"
        R"("type":"city","osm_key":"place","osm_value":"city","name":"Berlin"}},)";
    QByteArray answer = R"({"type":"FeatureCollection","features":[)";
    while (answer.size() + feature.size() < (1 << 20) - 2)
        answer += feature;
    answer.chop(1);
    answer += "]}";
    return answer.leftJustified(1 << 20, ' ');
}

void parser(benchmark::State& state) {
    const QByteArray answer = longestAnswer();
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(answer));
}

void parserAndRows(benchmark::State& state) {
    const QByteArray answer = longestAnswer();
    for (auto _ : state)
        benchmark::DoNotOptimize(readPhotonAnswer(answer, u"Berlin"_s));
}

BENCHMARK(parser)->Unit(benchmark::kMillisecond);
BENCHMARK(parserAndRows)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
