import numpy as np
import pytest


@pytest.fixture
def saved(tmp_path):
    """The path of the file that a test saves."""
    return tmp_path / "saved.mox"


@pytest.fixture
def triangle():
    return np.array([[0, 0, 0], [1, 0, 0], [0, 1, 0]], np.float32)
