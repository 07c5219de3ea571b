' Nothing: starts the script host alone.
