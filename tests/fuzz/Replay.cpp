// Gives each file of a corpus to the target that is linked with this: what was once found stays
// found.

#include <QDir>
#include <QFile>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
// A target that prepares something has it; libFuzzer calls it once, before all else.
extern "C" [[gnu::weak]] int LLVMFuzzerInitialize(int* argc, char*** argv);

int main(int argc, char** argv) {
    const QString corpus = QString::fromLocal8Bit(argc > 1 ? argv[1] : "");
    if (LLVMFuzzerInitialize != nullptr)
        LLVMFuzzerInitialize(&argc, &argv);
    const QStringList names = QDir(corpus).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QString& name : names) {
        QFile file(QDir(corpus).filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            return 1;
        const QByteArray content = file.readAll();
        std::fprintf(stderr, "%s\n", qUtf8Printable(name));
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.constData()),
                               std::size_t(content.size()));
    }
    std::printf("%lld inputs\n", static_cast<long long>(names.size()));
    return names.isEmpty() ? 1 : 0;
}
