#pragma once

#include <QRgb>

// The window's colours. Alpha is already resolved against the surface that each colour lies on, so
// that painting never blends and a contrast can be read off two numbers.
namespace look::colours {

constexpr QRgb window = 0xff28282b;
constexpr QRgb well = 0xff1b1b1d; // lists and editable fields

constexpr QRgb label = 0xffeaeaea;
constexpr QRgb labelOnWell = 0xffe8e8e8;
constexpr QRgb secondary = 0xffadadae;
constexpr QRgb secondaryOnWell = 0xffa4a4a5;
constexpr QRgb tertiary = 0xff8f8f91;
constexpr QRgb tertiaryOnWell = 0xff868687;
constexpr QRgb disabledText = 0xff818186;
constexpr QRgb white = 0xffffffff;

constexpr QRgb border = 0xff48484b;
constexpr QRgb borderReadOnly = 0xff3e3e40;
constexpr QRgb borderDisabled = 0xff39393c;
constexpr QRgb fieldReadOnly = 0xff232325;
constexpr QRgb fieldDisabled = 0xff242426;

constexpr QRgb blue = 0xff0a84ff;
constexpr QRgb red = 0xffff6b61;
constexpr QRgb focusRing = 0xff3e9bff; // and the border of a field with the focus
constexpr QRgb focusRingInner = 0xff185ba0;
constexpr QRgb textCursor = 0xff4da3ff;

constexpr QRgb selection = 0xff0a5bd0;
constexpr QRgb selectionDetail = 0xffd3e1f7;
constexpr QRgb selectionUnfocused = 0xff45454a;
constexpr QRgb selectionUnfocusedDetail = 0xffbebec3;
constexpr QRgb selectionDisabled = 0xff303034;
constexpr QRgb rowHover = 0xff242427;

constexpr QRgb thumb = 0xff5a5a5f;
constexpr QRgb thumbHover = 0xff77777d;
constexpr QRgb thumbDisabled = 0xff3c3c40;

constexpr QRgb panel = 0xff2f2f33; // dialogs and menus
constexpr QRgb panelOutline = 0xff515156;
constexpr QRgb toolTip = 0xff3a3a3e;
constexpr QRgb toolTipOutline = 0xff55555a;

constexpr QRgb push = 0xff4a4a4e;
constexpr QRgb pushTop = 0xff5c5c61;
constexpr QRgb pushHover = 0xff545458;
constexpr QRgb pushHoverTop = 0xff66666b;
constexpr QRgb pushPressed = 0xff626267;
constexpr QRgb pushPressedTop = 0xff6c6c71;
constexpr QRgb pushDisabled = 0xff343437;
constexpr QRgb pushDisabledTop = 0xff3a3a3e;

constexpr QRgb prominent = 0xff0b69e3;
constexpr QRgb prominentTop = 0xff2f83f0;
constexpr QRgb prominentHover = 0xff1a72e6;
constexpr QRgb prominentPressed = 0xff0857bf;
constexpr QRgb prominentPressedTop = 0xff2a6fcb;
constexpr QRgb prominentDisabled = 0xff1f3d66;
constexpr QRgb prominentDisabledTop = 0xff27476f;
constexpr QRgb prominentDisabledText = 0xff93a8c4;

constexpr QRgb track = 0xff343438;
constexpr QRgb trackLine = 0xff3f3f44;
constexpr QRgb trackDisabled = 0xff2f2f32;
constexpr QRgb trackLineDisabled = 0xff353538;
constexpr QRgb pill = 0xff67676c;
constexpr QRgb pillDisabled = 0xff434347;
constexpr QRgb pillDisabledText = 0xff9a9a9f;
constexpr QRgb divider = 0xff4b4b50;
constexpr QRgb segmentHover = 0xff3c3c41;
constexpr QRgb segmentPressed = 0xff47474c;

constexpr QRgb checkBoxDisabledLine = 0xff4e4e53;
constexpr QRgb spinner = 0xffc9c9cd;

} // namespace look::colours
