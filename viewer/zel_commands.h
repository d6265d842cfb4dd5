#pragma once

namespace zel {

/// Command ids of the viewer frame. Modules get theirs from zel_firstModuleId upward.
enum zel_Command : int {
    zel_CMD_ZOOM_IN = 5999,
    zel_CMD_ZOOM_OUT = 6000,
    zel_CMD_NORMAL_ZOOM = 6001,
    zel_CMD_STOP_BROWSING = 6002,
    zel_CMD_BROWSING_RANGE = 6003,
    zel_CMD_FASTER = 6004,
    zel_CMD_SLOWER = 6005,
    zel_CMD_LARGER_STEP = 6006,
    zel_CMD_SMALLER_STEP = 6007,
    zel_CMD_PREFERENCES = 6008,
    zel_CMD_AXIS_MENU = 6009,
    zel_CMD_WINDOW_MENU = 6010,
    zel_CMD_SAVE_3D_DATA = 6011,
    zel_CMD_SAVE_VIEW = 6012,
    zel_CMD_SAVE_GALLERY = 6013,
    zel_CMD_ADJUST_FRAME_SIZE = 6014,
    zel_CMD_AUTO_ADJUST_FRAME_SIZE = 6015,
    zel_CMD_VOLUME = 6016,
    zel_CMD_BROWSE_FORWARD = 6018,
    zel_CMD_BROWSE_BACKWARD = 6019,
    zel_CMD_LOOP_MODE = 6020,
    zel_CMD_OSCILLATION_MODE = 6021,
    zel_CMD_SHOW_XY = 6022,
    zel_CMD_SHOW_XZ = 6023,
    zel_CMD_SHOW_YZ = 6024,
    zel_CMD_AUTOFOCUS_ALL = 6025,
    zel_CMD_SHOW_ANNOTATION = 6026,
    zel_CMD_SHOW_INFO = 6027,
    zel_CMD_REVERSE_X = 6028,
    zel_CMD_REVERSE_Y = 6029,
    zel_CMD_REVERSE_Z = 6030,
    zel_CMD_AUTOFOCUS_XY = 6031,
    zel_CMD_AUTOFOCUS_XZ = 6032,
    zel_CMD_AUTOFOCUS_YZ = 6033,
    zel_CMD_AUTOFOCUS_MENU = 6034,
    zel_CMD_REFRESH_ICON = 6035, ///< an update-UI event that the canvas sends: the frame renews its icons
    zel_CMD_FRAME_CLOSING = 6037 ///< an update-UI event that the frame's parent gets when the frame goes
};

/// The first command id of the modules' menus.
constexpr int zel_firstModuleId = 6038;

} // namespace zel
