#pragma once

#include <QColor>

#include "platform/ColorSchemes.h"

namespace brindle {

/// What a colour is for. Every colour of the interface but shadows and the window's edge
/// comes from here.
enum class Role {
    // The theme
    surface,
    input,
    primaryText,
    secondaryText,
    border,
    separator,
    control,
    selection,
    accent,

    // What the pointer, the keyboard and single elements add
    accentHover,
    accentPressed,
    danger,
    dangerHover,
    dangerPressed,
    onAccent,  ///< text on a filled blue or red button
    rowHover,
    rowPressed,
    tabHover,
    tabPressed,
    activeText,  ///< text or symbol of an unselected thing that is hovered or pressed
    selectionHover,
    selectionPressed,
    controlHover,
    controlPressed,
    raisedControl,  ///< a plain button on a raised surface
    raisedControlHover,
    raisedControlPressed,
    inputHover,  ///< outline
    focusRing,
    focusRingOnSelection,
    focusGlow,  ///< outside a focused field
    pin,
    raised,  ///< menus and dialogs
    raisedBorder,
    destructiveText,
    segmentTrack,
    segmentChosen,
    segmentText,
    switchOff,
    scrollThumb,
    scrollThumbHover,
    rule,
    dim,  ///< over what a panel or dialog covers
    count
};

QColor color(Role role, ColorScheme scheme);

/// The one blue that both appearances share.
QColor accentColor();

}  // namespace brindle
