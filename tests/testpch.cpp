// A precompiled header belongs to a target with sources.
