#include "AwaitForms.h"

#include <QRegularExpression>

namespace ambrel {

namespace {

/// The source with its comments and the inside of its literals taken out.
QString codeAlone(QString source)
{
    static const QRegularExpression noise(
        QStringLiteral(
            R"re(//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:[^"\\\n]|\\.)*"|(?<![0-9a-fA-F])'(?:[^'\\\n]|\\.)+')re"),
        QRegularExpression::DotMatchesEverythingOption);
    return source.replace(noise, QStringLiteral("\"\""));
}

const QRegularExpression &safeForm()
{
    static const QRegularExpression form = [] {
        const QString name = QStringLiteral(R"([A-Za-z_]\w*(?:(?:::|\.|->)[A-Za-z_]\w*)*)");
        const QString argument = QStringLiteral(R"((?:std::move\(%1\)|%1))").arg(name);
        const QString awaited =
            QStringLiteral(R"(co_await %1(?:<[\w:, ]+>)?(?:\((?:%2(?:, %2)*)?\))?)").arg(name, argument);
        return QRegularExpression(
            QStringLiteral(R"(^(?:const auto [A-Za-z_]\w* = |%1 = |co_return )?%2$)").arg(name, awaited));
    }();
    return form;
}

} // namespace

QStringList unsafeAwaits(const QString &source, int *awaits)
{
    static const QRegularExpression anAwait(QStringLiteral(R"(\bco_await\b)"));
    static const QRegularExpression edge(QStringLiteral("[;{}]"));
    const QString code = codeAlone(source);
    QStringList unsafe;
    for (auto found = anAwait.globalMatch(code); found.hasNext();) {
        const qsizetype at = found.next().capturedStart();
        const qsizetype begin = code.lastIndexOf(edge, at) + 1;
        const qsizetype end = code.indexOf(u';', at);
        const QString statement = code.mid(begin, end - begin).simplified();
        if (!safeForm().match(statement).hasMatch())
            unsafe.append(statement);
        if (awaits)
            ++*awaits;
    }
    return unsafe;
}

} // namespace ambrel
