#pragma once

#include <QAccessible>
#include <QString>
#include <QWidget>

namespace ambrel {

/// Somebody who uses the window: finds things by what they are called and touches them where they stand.
class Person
{
public:
    /// `pictures` is the folder for the screenshots; empty for none.
    Person(QWidget &window, const QString &pictures);

    /// The first thing on the window, or within `within`, with this role and name; null when there is none.
    QAccessibleInterface *find(QAccessible::Role role, const QString &name,
                               QAccessibleInterface *within = nullptr) const;
    bool sees(QAccessible::Role role, const QString &name) const { return find(role, name) != nullptr; }
    bool sees(const QString &text) const { return sees(QAccessible::StaticText, text); }
    /// The text of the status line with this accessible description.
    QString statusLine(const QString &description) const;
    /// Names of the match cards, from the top.
    QStringList cards() const;

    /// Clicks in the middle of a thing.
    void click(QAccessibleInterface *thing) const;
    void click(const QString &button) const { click(find(QAccessible::Button, button)); }
    /// Clicks into a field and types over what it holds.
    void type(const QString &field, const QString &text) const;
    /// Keeps a picture of the window, with the photos on it.
    void takePicture(const QString &name);

private:
    QWidget &m_window;
    const QString m_pictures;
    int m_pictureCount = 0;
};

} // namespace ambrel
