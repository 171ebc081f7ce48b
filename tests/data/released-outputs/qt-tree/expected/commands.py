import enum
from software.remote.exception.command_not_found_exception import CommandNotFoundException
@unique
class Commands(enum.Enum):
    MENU = 'Menu'
    SHIFT = 'Shift'
    S3 = 'S3'
    S4 = 'S4'
    S5 = 'S5'
    S6 = 'S6'
    S7 = 'S7'
    S8 = 'S8'
    CLEAR = 'Clear'
    ENTER = 'Enter'
    F1 = 'F1'
    F2 = 'F2'
    F3 = 'F3'
    F4 = 'F4'
    F5 = 'F5'
    F6 = 'F6'
    F7 = 'F7'
    F8 = 'F8'
    F9 = 'F9'
    F10 = 'F10'
    Play = 'Play'
    Photo = 'Photo'

    @classmethod
    def from_name(cls, command):
        for property_name, member in Commands.__members__.items():
            if property_name == command.upper():
                return member
        raise CommandNotFoundException(command)
