"""The classes of the model, by their names in Python; _types.pyi tells them to type checkers."""
from ._model import MODEL

globals().update(MODEL.classes)
__all__ = list(MODEL.classes)
