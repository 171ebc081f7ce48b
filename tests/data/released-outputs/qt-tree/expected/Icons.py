from enum import IntEnum, auto, unique
@unique
class Icon(IntEnum):
    Play = 100
    Photo = auto()

#2 Icon(s)
value_names = [(icon.value, icon.name) for icon in Icon]
print(value_names)
