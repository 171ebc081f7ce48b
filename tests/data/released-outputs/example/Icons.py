from enum import IntEnum, auto, unique
@unique
class Icon(IntEnum):
    Play = 100
    Play_Selected = auto()
    Pause = auto()
    Stop = auto()
    Next = auto()
    Previous = auto()
    VolumeUp = auto()
    VolumeDown = auto()
    Battery = auto()
    Signal = auto()
    Menu = auto()
    Menu_Selected = auto()

#12 Icon(s)
value_names = [(icon.value, icon.name) for icon in Icon]
print(value_names)
