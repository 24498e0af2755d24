#include "Person.h"

#include "ui/MatchViews.h"

#include <QApplication>
#include <QDir>
#include <QTest>
#include <QWindow>
#include <functional>

namespace ambrel {

namespace {

using Wanted = std::function<bool(QAccessibleInterface &)>;

/// What is scrolled out of view or covered cannot be seen.
bool isOnScreen(const QAccessibleInterface &thing)
{
    const auto *const widget = qobject_cast<QWidget *>(thing.object());
    return widget && widget->visibleRegion().contains(widget->mapFromGlobal(thing.rect().center()));
}

QAccessibleInterface *search(QAccessibleInterface *root, const Wanted &isWanted)
{
    if (!root || root->state().invisible)
        return nullptr;
    if (isOnScreen(*root) && isWanted(*root))
        return root;
    for (int i = 0; i < root->childCount(); ++i) {
        if (auto *const found = search(root->child(i), isWanted))
            return found;
    }
    return nullptr;
}

} // namespace

Person::Person(QWidget &window, const QString &pictures) : m_window(window), m_pictures(pictures)
{
    if (pictures.isEmpty())
        return;
    QDir(pictures).removeRecursively();
    QDir().mkpath(pictures);
}

QAccessibleInterface *Person::find(QAccessible::Role role, const QString &name, QAccessibleInterface *within) const
{
    auto *const root = within ? within : QAccessible::queryAccessibleInterface(&m_window);
    return search(root, [&](QAccessibleInterface &thing) {
        return thing.role() == role && thing.text(QAccessible::Name) == name;
    });
}

QString Person::statusLine(const QString &description) const
{
    auto *const line = search(QAccessible::queryAccessibleInterface(&m_window), [&](QAccessibleInterface &thing) {
        return thing.text(QAccessible::Description) == description;
    });
    return line ? line->text(QAccessible::Name) : QString();
}

QStringList Person::cards() const
{
    QStringList names;
    search(QAccessible::queryAccessibleInterface(&m_window), [&](QAccessibleInterface &thing) {
        if (thing.role() == QAccessible::ListItem)
            names += thing.text(QAccessible::Name);
        return false;
    });
    return names;
}

void Person::click(QAccessibleInterface *thing) const
{
    QVERIFY2(thing, "there is nothing to click");
    const QPoint middle = thing->rect().center();
    QTest::mouseClick(m_window.windowHandle(), Qt::LeftButton, Qt::NoModifier, m_window.mapFromGlobal(middle));
}

void Person::type(const QString &field, const QString &text) const
{
    auto *const thing = find(QAccessible::EditableText, field);
    click(thing);
    QTest::keySequence(m_window.windowHandle(), QKeySequence::SelectAll);
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, m_window.windowHandle(), Qt::Key_unknown, QString(letter), Qt::NoModifier);
    QTRY_COMPARE(thing->text(QAccessible::Value), text);
}

void Person::takePicture(const QString &name)
{
    if (m_pictures.isEmpty())
        return;
    QTRY_VERIFY(allPhotosAreThere(m_window));
    const QString file = QStringLiteral("%1/%2-%3.png").arg(m_pictures).arg(++m_pictureCount, 2, 10, QLatin1Char('0'));
    QVERIFY(m_window.grab().save(file.arg(name)));
}

} // namespace ambrel
