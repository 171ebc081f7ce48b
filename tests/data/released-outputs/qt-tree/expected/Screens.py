from enum import IntEnum, auto, unique
@unique
class Screen(IntEnum):
    Splash = auto()

#1 Screen(s)
value_names = [(screen.value, screen.name) for screen in Screen]
print(value_names)
