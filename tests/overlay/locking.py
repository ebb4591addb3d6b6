# SPDX-License-Identifier: MIT
"""What scripts about LockTexture and UnlockTexture begin with."""

LOCKING = """
def watched():
    '''An editor, and an event that is set when it is destroyed.'''
    editor, gone = closed(), threading.Event()
    class Callable(object):
        def __call__(self, code): pass
        def __del__(self): gone.set()
    o.Orvanel_SetCallbackFunc(editor, Callable())
    return editor, gone

class Holder(object):
    '''A thread that locks an editor's texture, and unlocks it when it is told to.'''
    def __init__(self, editor):
        self.locked, self.go = threading.Event(), threading.Event()
        def hold():
            try: o.Orvanel_LockTexture(editor)
            except (ValueError, RuntimeError): return # it was deleted before
            self.locked.set()
            self.go.wait(100)
            o.Orvanel_UnlockTexture(editor)
        self.thread = on_a_thread(hold)
    def unlock(self):
        self.go.set()
        return ends(self.thread)

def is_refused(editor):
    try: o.Orvanel_IsDirty(editor)
    except ValueError: return True
"""
