// The standard footers: the last line of every dialog and window. Keys stand
// in angle brackets, in black (white on dark panels), their actions in
// dark-grey (light-grey on dark panels), the confirming keys right-aligned.
// The texts are exact, including their irregular spacing and tags.
#pragma once

namespace Tesk::Footer {

// Dialogs (light lower band).

// The login dialog. "black>" is no colour name and so draws black, the
// intended look.
inline constexpr char kLoginSwitchOkCancel[] =
    "{align:left}{color:black>}<F3>{/color} {color:dark-grey}Switch PIN/Password "
    "Login{/color}{/align}{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  "
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kDetailsChangeOkCancel[] =
    "{align:left}{color:black}<D>{/color} {color:dark-grey}View Details{/color}  "
    "{color:black}<Left/Right>{/color} {color:dark-grey}Change Selection{/color}  "
    "{/align}{align:right}  {color:black}<Enter>{/color} {color:dark-grey}OK{/color}  "
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kOkCancel[] =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  "
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kOk[] =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}{/align}";
inline constexpr char kRestartHost[] =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}Restart Host{/color}{/align}";
// The space before "OK" inside the dark-grey run.
inline constexpr char kOkJoined[] =
    "{align:right}{color:black}<Enter>{/color}{color:dark-grey} OK{/color}{/align}";
inline constexpr char kEnterConfirmCancel[] =
    "{color:black}<Enter>{/color} {color:dark-grey}Confirm{/color}{align:right}"
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kCancel[] =
    "{align:right}{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kF11OkCancel[] =
    "{align:right}{color:black}<F11>{/color} {color:dark-grey}OK{/color}  "
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kDetailsToggleOkCancel[] =
    "{color:black}<D>{/color} {color:dark-grey}View Details{/color}  {color:black}<Space>{/color} "
    "{color:dark-grey}Toggle Selected{/color}{align:right}{color:black}<Enter>{/color} "
    "{color:dark-grey}OK{/color}  {color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kToggleOkCancel[] =
    "{color:black}<Space>{/color} {color:dark-grey}Toggle Selected{/color}{align:right}"
    "{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  {color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kConfirmCancel[] =
    "{color:black}<Enter>{/color} {color:dark-grey}Confirm{/color}{align:right}"
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kYesResetCancel[] =
    "{color:black}<F11>{/color} {color:dark-grey}Yes, Reset{/color}{align:right}"
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kShutDownRestartCancel[] =
    "{color:black}<F2>{/color} {color:dark-grey}Shut Down{/color}  {color:black}<F11>{/color} "
    "{color:dark-grey}Restart{/color}{align:right}{color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kSelect[] = "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}";
inline constexpr char kSelectMarkOkCancel[] =
    "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}  {color:black}<Space>{/color} "
    "{color:dark-grey}Mark Selected{/color}{align:right}{color:black}<Enter>{/color} "
    "{color:dark-grey}OK{/color}  {color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kSelectToggleOkCancel[] =
    "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}  {color:black}<Space>{/color} "
    "{color:dark-grey}Toggle Selected{/color}{align:right}{color:black}<Enter>{/color} "
    "{color:dark-grey}OK{/color}  {color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";
inline constexpr char kSelectOkCancel[] =
    "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}{align:right}"
    "{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  {color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";
// The space before "Select" inside the dark-grey run.
inline constexpr char kSelectJoined[] =
    "{color:black}<Up/Down>{/color}{color:dark-grey} Select{/color}";
inline constexpr char kYesNoCancel[] =
    "{color:black}<Y>{/color} {color:dark-grey}Yes{/color}  {color:black}<N>{/color} "
    "{color:dark-grey}No{/color}{align:right}{color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";

// Full-screen windows (dark panels).

inline constexpr char kLogOut[] =
    "{align:right}{color:white}<Esc>{/color}{color:light-grey} Log Out{/color}{/align}";
// The action label's colour stays open up to the right-aligned part.
inline constexpr char kCreateExit[] =
    "{color:white}<Enter>{/color} {color:light-grey}Create{align:right}{color:white}<Esc>{/color} "
    "{color:light-grey}Exit{/color}{/align}";
inline constexpr char kMigrateExit[] =
    "{color:white}<Enter>{/color} {color:light-grey}Migrate{align:right}{color:white}<Esc>{/color} "
    "{color:light-grey}Exit{/color}{/align}";
inline constexpr char kRestartExitOpen[] =
    "{color:white}<Enter>{/color} {color:light-grey}Restart{align:right}{color:white}<Esc>{/color} "
    "{color:light-grey}Exit{/color}{/align}";
inline constexpr char kRestartLogOutOpen[] =
    "{color:white}<Enter>{/color} {color:light-grey}Restart{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
inline constexpr char kRestoreExit[] =
    "{color:white}<Enter>{/color} {color:light-grey}Restore{/color}{align:right}"
    "{color:white}<Esc>{/color} {color:light-grey}Exit{/color}{/align}";
// "<Esc> " with the space inside the white run.
inline constexpr char kChangeExitSpaced[] =
    "{color:white}<Enter>{/color}{color:light-grey} Change{/color}{align:right}"
    "{color:white}<Esc> {/color}{color:light-grey}Exit{/color}{/align}";
inline constexpr char kChangeExit[] =
    "{color:white}<Enter>{/color}{color:light-grey} Change{/color}{align:right}"
    "{color:white}<Esc>{/color}{color:light-grey} Exit{/color}{/align}";
inline constexpr char kChangeLogOut[] =
    "{color:white}<Enter>{/color}{color:light-grey} Change{/color}{align:right}"
    "{color:white}<Esc>{/color}{color:light-grey} Log Out{/color}{/align}";
inline constexpr char kMoreLogOut[] =
    "{color:white}<Enter>{/color}{color:light-grey} More{/color}{align:right}"
    "{color:white}<Esc>{/color}{color:light-grey} Log Out{/color}{/align}";
inline constexpr char kResetLogOut[] =
    "{color:white}<Enter>{/color}{color:light-grey} Reset{/color}{align:right}"
    "{color:white}<Esc>{/color}{color:light-grey} Log Out{/color}{/align}";
inline constexpr char kRestartExit[] =
    "{color:white}<Enter>{/color}{color:light-grey} Restart{/color}{align:right}"
    "{color:white}<Esc>{/color}{color:light-grey} Exit{/color}{/align}";
inline constexpr char kRunTestLogOut[] =
    "{color:white}<Enter>{/color}{color:light-grey} Run Test{/color}{align:right}"
    "{color:white}<Esc>{/color}{color:light-grey} Log Out{/color}{/align}";
// "<Enter>" runs straight into the light-grey label without closing white.
inline constexpr char kChangeLogOutOpen[] =
    "{color:white}<Enter>{color:light-grey} Change{/color}{align:right}"
    "{color:white}<Esc>{/color}{color:light-grey} Log Out{/color}{/align}";

}  // namespace Tesk::Footer
