from enum import IntEnum, auto, unique
@unique
class Screen(IntEnum):
    Splash = auto()
    Settings = auto()
    LowBattery = auto()

#3 Screen(s)
value_names = [(screen.value, screen.name) for screen in Screen]
print(value_names)
