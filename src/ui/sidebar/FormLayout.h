#pragma once

#include "toolkit/WrappedLabel.h"
#include "ui/sidebar/TextBinding.h"

#include <QBoxLayout>
#include <initializer_list>

namespace ambrel {

// What the sidebar's forms are laid out from. Each function makes something that its parent or layout then owns.

/// The vertical layout of a titled box.
QVBoxLayout *makeFormLayout(QWidget &box);

/// Widgets side by side.
QHBoxLayout *makeRow(std::initializer_list<QWidget *> widgets);

/// A text field that is named by its placeholder and bound to `field`.
QLineEdit *makeTextField(const QString &placeholder, TextField field, QWidget &parent);

/// A small secondary text that wraps.
WrappedLabel *makeCaption(const QString &text, QWidget &parent);

} // namespace ambrel
