#pragma once

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <string>

#include "ui/color_sample.h"

// What a dialog needs to know of a kind of control to bind it to a field of a settings struct:
// Put shows a field's value in the control, Take reads it, Changed is the control's signal.

namespace kelvane {

inline void Put(QLineEdit& edit, const std::string& text)
{
    edit.setText(QString::fromStdString(text));
}
inline void Take(const QLineEdit& edit, std::string& text)
{
    text = edit.text().toStdString();
}
inline auto Changed(const QLineEdit*)
{
    return &QLineEdit::textChanged;
}

inline void Put(QCheckBox& box, bool ticked)
{
    box.setChecked(ticked);
}
inline void Take(const QCheckBox& box, bool& ticked)
{
    ticked = box.isChecked();
}
inline auto Changed(const QCheckBox*)
{
    return &QCheckBox::toggled;
}

inline void Put(ColorSample& sample, Rgb color)
{
    sample.SetColor(color);
}
inline void Take(const ColorSample& sample, Rgb& color)
{
    color = sample.Color();
}
inline auto Changed(const ColorSample*)
{
    return &ColorSample::colorChanged;
}

template <class Choice>
void Put(QButtonGroup& options, Choice choice)
{
    options.button(static_cast<int>(choice))->setChecked(true);
}
template <class Choice>
void Take(const QButtonGroup& options, Choice& choice)
{
    choice = static_cast<Choice>(options.checkedId());
}
inline auto Changed(const QButtonGroup*)
{
    return &QButtonGroup::idToggled;
}

template <class Choice>
void Put(QComboBox& list, Choice choice)
{
    list.setCurrentIndex(static_cast<int>(choice));
}
template <class Choice>
void Take(const QComboBox& list, Choice& choice)
{
    choice = static_cast<Choice>(list.currentIndex());
}
inline auto Changed(const QComboBox*)
{
    return &QComboBox::currentIndexChanged;
}

} // namespace kelvane
