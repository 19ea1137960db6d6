# A key-value store behind a process, written against the Elixir guides.
defmodule Sample.KV do
  @moduledoc """
  A small key-value store kept by an `Agent`.

  Keys are strings; values are anything. See `put/3` and `get/2`.
  """

  use Agent
  require Logger

  @default_limit 1_000
  @type key :: String.t()

  defstruct name: "kv", limit: @default_limit, hits: 0

  @doc "Starts the store with an empty map."
  @spec start_link(keyword()) :: Agent.on_start()
  def start_link(opts \\ []) do
    limit = Keyword.get(opts, :limit, @default_limit)
    Agent.start_link(fn -> %{limit: limit, data: %{}} end, name: __MODULE__)
  end

  @doc """
  Puts `value` under `key`, unless the store is full.
  """
  def put(store \\ __MODULE__, key, value) when is_binary(key) do
    Agent.get_and_update(store, fn %{limit: limit, data: data} = state ->
      cond do
        map_size(data) >= limit ->
          {{:error, :full}, state}

        true ->
          {:ok, %{state | data: Map.put(data, key, value)}}
      end
    end)
  end

  def get(store \\ __MODULE__, key) do
    case Agent.get(store, &Map.fetch(&1.data, key)) do
      {:ok, value} -> value
      :error ->
        Logger.debug("no key #{inspect(key)} in store")
        nil
    end
  end

  # Keys that look like numbers, e.g. "42" or "0x2A".
  def numeric_keys(store \\ __MODULE__) do
    store
    |> Agent.get(& &1.data)
    |> Map.keys()
    |> Enum.filter(&Regex.match?(~r/^(\d+|0x[0-9a-f]+)$/i, &1))
  end

  defp parse(line) do
    with [k, v] <- String.split(line, "=", parts: 2),
         {n, ""} <- Integer.parse(String.trim(v)) do
      {:ok, String.trim(k), n * 0x10 + 0b11}
    else
      _ -> {:error, "bad line: '#{line}'"}
    end
  end

  def load(text) do
    for line <- String.split(text, "\n"), line != "", reduce: %{} do
      acc ->
        case parse(line) do
          {:ok, k, n} -> Map.put(acc, k, n)
          {:error, why} -> raise ArgumentError, why
        end
    end
  end

  def words, do: ~w(alpha beta gamma)a
  def ratio, do: 2.5e-3
end
