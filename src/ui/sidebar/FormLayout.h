#pragma once

#include "ui/sidebar/TextBinding.h"

#include <QBoxLayout>
#include <initializer_list>

namespace ambrel {

class AnnouncedLabel;

// What the sidebar's forms are laid out from. Each function makes something that its parent or layout then owns.

/// The vertical layout of a titled box.
QVBoxLayout *makeFormLayout(QWidget &box);

/// Widgets side by side.
QHBoxLayout *makeRow(std::initializer_list<QWidget *> widgets);

/// A text field that is named by its placeholder and bound to `field`.
QWidget *makeTextField(const QString &placeholder, TextField field, QWidget &parent);

/// A small secondary text that wraps.
QWidget *makeCaption(const QString &text, QWidget &parent);

/// A text like that which changes; `description` tells screen readers what it is about.
AnnouncedLabel *makeStatusCaption(const QString &description, QWidget &parent);

} // namespace ambrel
