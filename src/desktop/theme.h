#pragma once

namespace pluvo::desktop {

enum class Theme { system, light, dark };

Theme chosenTheme();
/// Shows the program in these colours from now on.
void chooseTheme(Theme theme);
/// Before the first window: the theme chosen last.
void applyChosenTheme();

}  // namespace pluvo::desktop
