pragma Singleton

import QtQuick
import Quillmere.Support

/// The two palettes, the type scale, spacing, radii and motion. Screens take every colour and measure from here.
QtObject {
    readonly property bool dark: Appearance.dark
    readonly property bool reducedMotion: Appearance.reducedMotion

    // Grounds
    readonly property color canvas: dark ? "#0E181B" : "#F3F6F7"
    readonly property color sidebarTop: dark ? "#15272C" : "#E6EFF0"
    readonly property color sidebarBottom: dark ? "#101E23" : "#DAE7EA"
    readonly property color sidebarHairline: dark ? "#1F3237" : "#CFDDE0"
    readonly property color sidebarSelection: dark ? "#1B4A53" : "#FFFFFF"
    readonly property color sidebarSelectionBorder: dark ? "#1B4A53" : "#D3E1E4"
    readonly property color sidebarSelectionText: dark ? "#D7F3F6" : "#064F5B"
    readonly property color card: dark ? "#17262A" : "#FFFFFF"
    readonly property color raised: dark ? "#1D2F34" : "#FFFFFF"
    readonly property color raisedBorder: dark ? "#2F454B" : "#FFFFFF"
    readonly property color inset: dark ? "#101D20" : "#EEF3F4"
    readonly property color hover: dark ? "#1F3338" : "#EEF3F4"
    readonly property color pressed: dark ? "#273D43" : "#E2EAEC"
    readonly property color bar: dark ? "#122023" : "#FAFCFC"
    readonly property color well: dark ? "#0F1C1F" : "#E6EDEF"
    readonly property color segment: dark ? "#2A4046" : "#FFFFFF"

    // Lines and tracks
    readonly property color cardBorder: dark ? "#24373C" : "#E0E8EA"
    readonly property color divider: dark ? "#22353A" : "#E6ECEE"
    readonly property color track: dark ? "#26393E" : "#E2EAEC"
    readonly property color quietBorder: dark ? "#33484E" : "#CBD7DA"
    readonly property color insetBorder: dark ? "#2B3F45" : "#D8E1E4"
    readonly property color fieldBorder: dark ? "#6A8087" : "#84969C"
    readonly property color focusRing: dark ? "#7FDCE6" : "#0E8799"

    // Text
    readonly property color text: dark ? "#E9F2F3" : "#0F2328"
    readonly property color textSecondary: dark ? "#A9BCC1" : "#455A61"
    readonly property color textTertiary: dark ? "#8EA3A9" : "#55686E"
    readonly property color fillText: "#FFFFFF"

    // Accent
    readonly property color accent: dark ? "#55C2CE" : "#0B6B7A"
    readonly property color accentFillTop: dark ? "#15808F" : "#0E7B8B"
    readonly property color accentFill: dark ? "#127A89" : "#0B6B7A"
    readonly property color heroStart: dark ? "#127A89" : "#0B6B7A"
    readonly property color heroEnd: dark ? "#127D77" : "#0C7E7A"
    readonly property color accentSoft: dark ? "#17434C" : "#CFE5E9"
    readonly property color accentSoftText: dark ? "#9FE3EA" : "#064F5B"
    readonly property color progressEnd: dark ? "#58D0C6" : "#2BB3A6"

    // Risk, as text on a card
    readonly property color greenText: dark ? "#63D08D" : "#166B38"
    readonly property color orangeText: dark ? "#F7AC5D" : "#9C4600"
    readonly property color redText: dark ? "#FF8D84" : "#B3241C"
    readonly property color purpleText: dark ? "#C9A0FA" : "#7430B0"

    // Fills
    readonly property color blue: dark ? "#5B9CF5" : "#2B74D8"
    readonly property color green: dark ? "#52C27A" : "#2B9652"
    readonly property color purple: dark ? "#AE82EE" : "#8450CC"
    readonly property color orange: dark ? "#F0993F" : "#D06A08"
    readonly property color teal: dark ? "#37C6C1" : "#0E9491"
    readonly property color red: dark ? "#F2695F" : "#D63A31"
    readonly property color yellow: dark ? "#F5CB4A" : "#EDB51C"
    readonly property color greenRipple: dark ? "#3DA368" : "#238A4C"
    readonly property color destructiveTop: dark ? "#CE3F36" : "#CB342B"
    readonly property color destructiveBottom: dark ? "#B7322A" : "#B3241C"
    readonly property color diskStart: dark ? "#4B8FF0" : "#2F80E4"
    readonly property color diskEnd: dark ? "#A878F0" : "#8A4BD6"

    // Slices of a disk. Their lightness differs, so that they stay apart for whoever does not see red, green or blue.
    readonly property color sliceBlue: dark ? "#3F82EA" : "#2F7BE0"
    readonly property color sliceGreen: dark ? "#4CC47A" : "#1E8746"
    readonly property color slicePurple: dark ? "#C3A0FA" : "#6030AE"
    readonly property color sliceOrange: dark ? "#E0852A" : "#D06A08"
    readonly property color sliceGray: dark ? "#73868D" : "#4C5C64"
    readonly property color sliceTeal: dark ? "#6BE5DF" : "#12A29D"
    readonly property list<color> slices: [sliceBlue, sliceGreen, slicePurple, sliceOrange, sliceGray, sliceTeal]

    // Switch
    readonly property color switchOff: dark ? "#647A81" : "#84969C"
    readonly property color switchOnDisabled: dark ? "#1C4149" : "#A9CDD3"
    readonly property color knobDisabled: dark ? "#5C7177" : "#F7FAFA"

    // Quiet button
    readonly property color quiet: dark ? "#1E3036" : "#FFFFFF"
    readonly property color quietHover: dark ? "#26393E" : "#F0F5F6"
    readonly property color quietPressed: dark ? "#2D4248" : "#E2EAEC"

    // Warning banner, console, promotion card
    readonly property color bannerGround: dark ? "#2B2418" : "#FDF1E1"
    readonly property color bannerBorder: tint(orange, dark ? 0.35 : 0.4)
    readonly property color consoleGround: dark ? "#0B1517" : "#10252B"
    readonly property color consoleText: "#E6F2F4"
    readonly property color consoleMuted: "#9FC3CA"
    readonly property color promotionTop: "#0A3644"
    readonly property color promotionMiddle: "#0F6072"
    readonly property color promotionBottom: "#1B7F89"
    readonly property color wizardBottom: "#15717D"
    readonly property color promotionNote: "#CFEDEF"
    readonly property color promotionStrip: Qt.rgba(0.02, 0.13, 0.17, 0.78)
    readonly property color sun: "#F7C284"

    readonly property color tooltip: dark ? "#E9F2F3" : "#12282E"
    readonly property color tooltipText: dark ? "#0F2328" : "#F3F8F9"
    readonly property color shadow: dark ? "#000000" : "#0B2A33"
    readonly property real shadowStrength: dark ? 2.2 : 1.0
    readonly property color dim: Qt.rgba(0, 0, 0, 0.33)
    readonly property color wizardDim: Qt.rgba(0, 0, 0, 0.4)
    // On a dimmed ground. It is dark enough for any colour, or too dark for the quiet ones.
    readonly property color dimmedSymbol: dark ? textTertiary : text
    readonly property color dimmedFocusRing: dark ? focusRing : text

    // Type
    readonly property string textFamily: Appearance.textFamily
    readonly property string displayFamily: Appearance.displayFamily
    readonly property string monospaceFamily: Appearance.monospaceFamily
    readonly property int displayFrom: 17

    // Space and shape
    readonly property int screenMargin: 24
    readonly property int cardGap: 16
    readonly property int tileGap: 12
    readonly property int cardPadding: 18
    readonly property int firstCardY: 72
    readonly property int titleY: 18
    readonly property int buttonBarHeight: 64
    readonly property int windowBarHeight: 52
    readonly property int narrowBelow: 720
    readonly property int smallestHitArea: 36
    readonly property int sidebarRowRadius: 8
    readonly property int controlRadius: 9
    readonly property int rowRadius: 10
    readonly property int tileRadius: 11
    readonly property int promotionRadius: 12
    readonly property int cardRadius: 14
    readonly property int sheetRadius: 18

    // Motion, in milliseconds
    readonly property int colorDuration: reducedMotion ? 0 : 120
    readonly property int knobDuration: reducedMotion ? 0 : 160
    readonly property int expandDuration: reducedMotion ? 0 : 200
    readonly property int sheetInDuration: reducedMotion ? 80 : 220
    readonly property int sheetOutDuration: reducedMotion ? 80 : 140
    readonly property int wizardDuration: reducedMotion ? 80 : 250
    readonly property int barDuration: reducedMotion ? 0 : 300
    readonly property int rippleDuration: 2400
    readonly property int tooltipDelay: 500

    /// The same colour at @p opacity.
    function tint(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, opacity);
    }

    /// The family for text of @p pixelSize.
    function familyFor(pixelSize: int): string {
        return pixelSize >= displayFrom ? displayFamily : textFamily;
    }
}
