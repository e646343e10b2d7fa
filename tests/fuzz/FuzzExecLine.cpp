// `Exec` lines of any text: the arguments can be passed to a program, and quoting and reading them again
// gives the same arguments.
#include "Require.h"
#include "platform/linux/applications/launching/ExecLine.h"

#include <cstdint>

using namespace amberquill::desktop;

namespace {

// The argument in quotes, with every special character escaped.
QString quoted(const QString& argument) {
    QString text(u'"');
    for (const QChar c : argument) {
        if (QStringView(u"\"`$\\").contains(c)) {
            text += u'\\';
        }
        text += c;
        if (c == u'%') {
            text += c;
        }
    }
    return text + u'"';
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ExecFields fields{QStringLiteral("icon"), QStringLiteral("A %f \"name\""),
                                   QStringLiteral("/a b/c.desktop")};
    const QString line = QString::fromUtf8(QByteArrayView(data, static_cast<qsizetype>(size)));
    const auto arguments = execArguments(line, fields);
    if (!arguments) {
        return 0;
    }
    require(!arguments->isEmpty() && !arguments->front().isEmpty());
    QStringList again;
    qsizetype length = 0;
    for (const QString& argument : *arguments) {
        require(!argument.contains(QChar::Null));
        length += argument.size() + 1;
        again += quoted(argument);
    }
    require(length <= 256 * 1024);
    // Expanded names may have made the line too long to be read again.
    const QString second = again.join(u' ');
    if (second.size() < 32 * 1024) {
        require(execArguments(second, {}) == arguments);
    }
    return 0;
}
