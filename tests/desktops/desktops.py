"""The desktops on which the program is tried: how each one's window manager is started."""
import dataclasses
import subprocess


@dataclasses.dataclass(frozen=True)
class Manager:
    """A window manager or a compositor as its package leaves it, but for what `files` changes."""
    name: str
    package: str
    command: tuple
    files: dict = dataclasses.field(default_factory=dict)  # by their path below HOME
    tree: tuple = ()  # i3, sway: what tells of its windows, as no property does
    workspace: tuple = ()  # i3: what shows the workspace of the number "{}"; Wayland: the keys to another and back
    lacks: dict = dataclasses.field(default_factory=dict)  # by a check's name: why it cannot be made here

    known: dict = dataclasses.field(default_factory=dict)  # by a check's name: what not every run sees

    def version(self):
        found = subprocess.run(["dpkg-query", "-W", "-f", "${source:Upstream-Version}", self.package],
                               text=True, capture_output=True).stdout
        return found or "?"


KWIN = {".config/kwinrc": "[Desktops]\nNumber=2\nRows=1\n"}
I3 = """# i3 config file (v4)
font pango:monospace 8
for_window [all] floating enable
"""
NO_ICON = {name: "it has no icons and does not maximise" for name in (
    "an_alert_of_a_minimised_window_is_there_when_it_comes_back", "zoom_and_back")}

X11 = {each.name: each for each in (
    Manager("openbox", "openbox", ("openbox",)),
    Manager("xfwm4", "xfwm4", ("xfwm4",)),
    Manager("marco", "marco", ("marco",)),
    Manager("mutter", "mutter", ("mutter", "--x11"), known={
        "zoom_and_back": "in about one of three runs it goes on showing the window as it was before it was maximised, "
                         "although the window's own content (as xwd reads it) is right"}),
    Manager("kwin_x11", "kwin-x11", ("kwin_x11",), files=KWIN),
    Manager("icewm", "icewm", ("icewm",)),
    Manager("i3", "i3-wm", ("i3",), files={".config/i3/config": I3}, workspace=("i3-msg", "workspace", "{}"),
            tree=("i3-msg", "-t", "get_tree"), lacks=NO_ICON),
)}

QUIET = {"a_job_that_ends_in_the_active_window_asks_for_nothing":
         "the toolkit asks for the keyboard with every change of the focus, which says nothing in the active window"}

# Root must not run it: then it gets another user.
SWAY = """
if [ "$(id -u)" = 0 ]; then
    chown -R 65534:65534 "$HOME"
    set -- setpriv --reuid=65534 --regid=65534 --clear-groups
fi
WLR_BACKENDS=x11 WLR_RENDERER=pixman exec "$@" sway
"""
SWAY_CONFIG = """xwayland disable
swaybg_command -
output * resolution 1280x1024
for_window [app_id=".*"] floating enable
floating_modifier Mod4
bindsym Mod4+1 workspace 1
bindsym Mod4+2 workspace 2
bindsym Mod1+F4 kill
bindsym Mod1+Tab focus next
"""
# Its file asks for a right that not every machine gives; a copy asks for none.
KWIN_WAYLAND = """
cp "$(command -v kwin_wayland)" "$XDG_RUNTIME_DIR/kwin_wayland" &&
exec "$XDG_RUNTIME_DIR/kwin_wayland" --x11-display "$DISPLAY" --width 1280 --height 1024 --no-lockscreen
"""
MUTTER = "MUTTER_DEBUG_DUMMY_MODE_SPECS=1280x1024 exec mutter --wayland --nested --no-x11"

WAYLAND = {each.name: each for each in (
    Manager("sway", "sway", ("sh", "-c", SWAY), files={".config/sway/config": SWAY_CONFIG},
            workspace=("Super+2", "Super+1"), tree=("swaymsg", "-r", "-t", "get_tree"), lacks=NO_ICON | QUIET),
    Manager("kwin_wayland", "kwin-wayland", ("sh", "-c", KWIN_WAYLAND), files=KWIN, workspace=("Ctrl+F2", "Ctrl+F1"),
            lacks=QUIET),
    Manager("mutter_wayland", "mutter", ("sh", "-c", MUTTER), workspace=("Super+Page_Down", "Super+Page_Up"),
            lacks=QUIET),
)}
