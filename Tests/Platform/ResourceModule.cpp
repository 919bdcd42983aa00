// All that this module has is resources.
